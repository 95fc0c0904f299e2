#pragma once
// Field-by-field comparison of two images, with a name for every field of
// every record ("group 1 ackCode", "point 3 port", "hardware input 2
// debounce"), so a technician sees what a unit holds that a file does not.

#include "core/database/database.h"

#include <string>
#include <vector>

namespace rk4 {

struct FieldDifference {
    std::string field;    // record and field, e.g. "point 3 port"
    std::string expected; // the value in the first image; empty for byte arrays
    std::string actual;   // the value in the second image; empty for byte arrays
};

// The unit rewrites the transfer stamp on every write, so it normally says
// nothing about whether two configurations agree.
enum class TransferStamp { Ignore, Compare };

// Every field that differs, in image order.
std::vector<FieldDifference> compareDatabases(const Database& expected, const Database& actual,
                                              TransferStamp stamp = TransferStamp::Ignore);

// "point 3 port: 2 expected, 5 found", or the name alone for a byte array.
std::string differenceText(const FieldDifference& difference, const std::string& expectedLabel,
                           const std::string& actualLabel);

} // namespace rk4
