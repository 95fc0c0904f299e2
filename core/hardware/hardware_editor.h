#pragma once
// The inputs and outputs windows (HardwareWin) without a window: the working
// copy of the 16 port entries, the corruption check, the list lines, editing
// one port through its dialog, and leaving.

#include "core/hardware/port_editor.h"
#include "core/shell/editor.h"

#include <functional>
#include <string>
#include <vector>

namespace rk4 {

class Workspace;

// Right-aligns `value` in `width` characters with blanks (never cuts it).
std::string PadValue(const std::string& value, std::size_t width);

class HardwareEditor : public Editor {
  public:
    enum class Mode { Inputs, Outputs };

    HardwareEditor(Workspace& space, Mode mode);

    Mode mode() const { return windowMode; }
    bool outputs() const { return windowMode == Mode::Outputs; }
    std::string title() const { return outputs() ? "OUTPUTS" : "INPUTS"; }

    // Takes the navigation flags, runs the corruption check and loads the copy.
    void SetupWindow(Prompter& prompter);

    std::string DrawTitles() const;
    // The text of line 0..7 of this window: one or more screen lines. Repairs
    // unknown types in the copy while drawing, as the list always has.
    std::vector<std::string> DrawLine(int line);

    int selected = 0;
    int selectedPort() const { return selected + (outputs() ? kInputCount : 0); }

    // Opens the dialog of the selected port's type, and again for the new type
    // after a type change. `runDialog` shows the dialog (or, in tests, plays it).
    using DialogRunner = std::function<void(PortEditor&)>;
    void EditLine(const DialogRunner& runDialog);

    const HardwareRecord& copy() const { return working; }

    void writeBack() override;
    bool changed() const override;
    std::string scope() const override { return outputs() ? "the hardware outputs" : "the hardware inputs"; }
    void leave() override;

  private:
    std::vector<std::string> inputLine(int port);
    std::vector<std::string> outputLine(int port);

    Workspace& space;
    Mode windowMode;
    HardwareRecord working;
};

} // namespace rk4
