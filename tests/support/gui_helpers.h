#pragma once
// Helpers for the window tests: play a modal dialog from inside its exec(),
// and find a widget by object name, failing the test when it is missing.

#include <QApplication>
#include <QDialog>
#include <QTimer>

#include <functional>
#include <gtest/gtest.h>

namespace rk4::test {

inline void whenDialogOpens(std::function<void(QDialog*)> play)
{
    QTimer::singleShot(0, [play] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr) << "no modal dialog";
        play(dialog);
    });
}

template <typename T>
T* child(QObject* parent, const char* name)
{
    T* found = parent->findChild<T*>(name);
    EXPECT_NE(found, nullptr) << name;
    return found;
}

} // namespace rk4::test
