#pragma once
// The points list window (PointsWin) without a window: the working copy of
// the 30 point records, their line texts with the special use of each port
// worked out while drawing, editing one point through its dialogs, and
// leaving.

#include "core/points/point_editor.h"
#include "core/shell/editor.h"

#include <array>
#include <functional>
#include <string>

namespace rk4 {

class Workspace;

class PointsEditor : public Editor {
  public:
    explicit PointsEditor(Workspace& space);

    // Takes the navigation flags, clears the worked-out bytes 69 and 70 in the
    // image and loads the copy.
    void SetupWindow();

    std::string DrawTitles() const;
    // The text of slot 0..29. Works out the special use of the point's port
    // into the copy, as the list always has.
    std::string DrawLine(int line);

    int selected = 0;

    // Opens the dialog of the selected point's type, and again for the new
    // type after a port change. `runDialog` shows the dialog (or, in tests,
    // plays it).
    using DialogRunner = std::function<void(PointEditor&)>;
    void EditLine(const DialogRunner& runDialog);

    const PointList& copy() const { return working; }

    void writeBack() override;
    bool changed() const override;
    std::string scope() const override { return "Points"; }
    void leave() override;

  private:
    std::string details(const PointRecord& point) const;

    Workspace& space;
    // changed() refreshes bytes 69 and 70 from the image before comparing:
    // they are worked out while drawing, not edited by the user.
    mutable PointList working{};
    std::array<bool, kInputCount> resetsTotalizer{};
};

} // namespace rk4
