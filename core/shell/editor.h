#pragma once
// What every editor window shares: it works on a private copy, Exit writes the
// copy into the image, any other way out asks the save-or-discard prompt when
// the copy differs, and every close gives the navigation flags back.
//
// An editor's core object derives from Editor; its Qt window derives from
// gui::EditorWindow and only binds widgets to the core object.

#include "core/common/prompter.h"

#include <string>

namespace rk4 {

enum class Leaving { Exit, Other };

class Editor {
  public:
    virtual ~Editor() = default;

    // Write the working copy into the image; DatabaseChanged only on a difference.
    virtual void writeBack() = 0;
    // True when the working copy differs from the image.
    virtual bool changed() const = 0;
    // What the save-or-discard prompt names, e.g. "the hardware inputs".
    virtual std::string scope() const = 0;
    // Every close, whatever the way out: the navigation flags come back.
    virtual void leave() = 0;

    // False keeps the editor open (the user chose to go back).
    bool CanClose(Prompter& prompter, Leaving how);
    bool isOpen() const { return open; }

  protected:
    bool open = true;
};

} // namespace rk4
