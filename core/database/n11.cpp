#include "core/database/n11.h"

namespace rk4 {

namespace {

constexpr const char* kReason[] = {
    "This is a reserved number sequence.",               // 211
    "This is a reserved number sequence.",               // 311
    "This will result in an Directory Assistance call.", // 411
    "TThis is a reserved number sequence.",              // 511, directory editor
    "This will result in an Repair Service call.",       // 611
    "This is a reserved number sequence.",               // 711
    "This is reserved for Business Office calls.",       // 811
    "This will result in an Emergency call.",            // 911
};

constexpr const char* kBasic511Reason = "This is a reserved number sequence.";

} // namespace

std::optional<std::string> N11Refusal(std::string_view number, N11Wording wording)
{
    if (number.size() < 3 || number[0] < '2' || number[0] > '9' || number[1] != '1' || number[2] != '1')
        return std::nullopt;
    const char first = number[0];
    const char* reason = first == '5' && wording == N11Wording::Basic ? kBasic511Reason : kReason[first - '2'];
    return std::string("Not a valid phone number -  The first digits cannot be ") + first + "11.\n" + reason;
}

} // namespace rk4
