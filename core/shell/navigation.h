#pragma once
// The navigation flags: one per editor, set while its command is available.
// Opening an editor clears its own flag and those of the editors whose data it
// touches, plus fileon and pgmon; closing sets them again. The GUI derives
// every command's enabled state from these flags in one place.

#include <array>
#include <initializer_list>

namespace rk4 {

// clang-format off
enum class NavFlag {
    DirA, DirB, DirC, DirD, DirE, DirF,
    Grp1, Grp2, Grp3, Grp4, Grp5, Grp6,
    Points, Inputs, Outputs, Hardware, General, Summary,
    File, Pgm, Modem, Voice, Wave, Cellular,
    Count
};
// clang-format on

class NavigationFlags {
  public:
    NavigationFlags() { flags.fill(true); }

    bool isOn(NavFlag flag) const { return flags[static_cast<int>(flag)]; }
    bool dirOn(int directory) const { return isOn(static_cast<NavFlag>(static_cast<int>(NavFlag::DirA) + directory)); }
    bool groupOn(int group) const { return isOn(static_cast<NavFlag>(static_cast<int>(NavFlag::Grp1) + group)); }
    bool fileon() const { return isOn(NavFlag::File); }
    bool pgmon() const { return isOn(NavFlag::Pgm); }

    // An editor opens: its flags go off, and with them the file commands and Program.
    void enterEditor(std::initializer_list<NavFlag> touched)
    {
        for (NavFlag flag : touched)
            set(flag, false);
        set(NavFlag::File, false);
        set(NavFlag::Pgm, false);
    }

    // An editor closes: its flags come back; the file commands and Program come
    // back only when no directory editor is open.
    void leaveEditor(std::initializer_list<NavFlag> touched)
    {
        for (NavFlag flag : touched)
            set(flag, true);
        bool allDirectoriesOn = true;
        for (int d = 0; d < 6; ++d)
            allDirectoriesOn = allDirectoriesOn && dirOn(d);
        if (allDirectoriesOn) {
            set(NavFlag::File, true);
            set(NavFlag::Pgm, true);
        }
    }

    void set(NavFlag flag, bool on) { flags[static_cast<int>(flag)] = on; }
    void setAll(bool on) { flags.fill(on); }

  private:
    std::array<bool, static_cast<int>(NavFlag::Count)> flags{};
};

// The flags the hardware, inputs, outputs and points windows touch.
inline constexpr std::initializer_list<NavFlag> kPortEditorFlags = {
    NavFlag::Grp1, NavFlag::Grp2,     NavFlag::Grp3,   NavFlag::Grp4,    NavFlag::Grp5,
    NavFlag::Grp6, NavFlag::Hardware, NavFlag::Inputs, NavFlag::Outputs, NavFlag::Points};

} // namespace rk4
