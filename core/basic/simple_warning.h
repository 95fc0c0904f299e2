#pragma once
// What the Basic warning shows about an image that does not fit Basic mode, the
// explanation of each rule, and the ways out: convert, convert keeping the
// directories, or stay in Advanced mode.

#include "core/basic/simple_check.h"
#include "core/common/prompter.h"
#include "core/database/database.h"

#include <string>
#include <vector>

namespace rk4 {

inline constexpr char kDetailTitle[] = "Basic Configuration Infomation";
inline constexpr char kOpenedIntro[] =
    "The Rk4 database that you have opened is not configured for the Basic mode of operation.";
inline constexpr char kSwitchIntro[] = "The Rk4 database is not presently configured for the Basic mode of operation.";
inline constexpr char kListedBelow[] =
    "The settings that are not compatible with a Basic configuration are listed below.";
inline constexpr char kConversionWizardQuestion[] =
    "Do you want to use the Basic Wizard?\nIf you select No, a default Basic database will be created.";

// The numbers of one rule's offenders: "3", "3 and 4", "3, 4 and 5".
std::string MakeNumberList(const SimpleCheck& check, int code);
// The list line of one rule the check found.
std::string problemLine(const SimpleCheck& check, const Database& db, int code);
// The explanation of one rule code (empty for a code without one).
std::string detailText(int code);

enum class SimpleChoice { ConvertAll, KeepDirectories, StayAdvanced };

class SimpleWarning {
  public:
    struct Item {
        std::string text;
        int code = -1; // -1 for the introduction lines
    };

    // `opened`: the image came from a file, rather than from a mode switch.
    SimpleWarning(const Database& db, bool opened);

    const SimpleCheck& check() const { return result; }
    const std::vector<Item>& items() const { return lines; }

    void UpdateSelection(int index) { selected = index; }
    int selection() const { return selected; }
    // The explanation of the selected item; empty for an introduction line.
    std::string explanation() const;
    void ShowDetail(Prompter& prompter) const;

  private:
    SimpleCheck result;
    std::vector<Item> lines;
    int selected = -1;
};

// Convert All: a Basic default image, directories cleared.
void Change2Simple(Database& db);
// Directories stay Unchanged: the same, with the six directories kept.
void Change2Simple2(Database& db);
// Stay in Advanced mode; nothing else changes.
void LeaveComplex(Database& db);
// Asked after either conversion; true for the wizard.
bool askConversionWizard(Prompter& prompter);

} // namespace rk4
