#pragma once
// The two summaries of what each mode allows, shown before a mode switch and
// from the Basic warning.

#include <QDialog>

namespace rk4::gui {

class RulesDialog : public QDialog {
    Q_OBJECT

  protected:
    RulesDialog(const QString& objectName, const QString& title, const QString& rules, QWidget* parent);
};

class SimpleRulesDialog : public RulesDialog {
    Q_OBJECT

  public:
    explicit SimpleRulesDialog(QWidget* parent);
};

class AdvancedRulesDialog : public RulesDialog {
    Q_OBJECT

  public:
    explicit AdvancedRulesDialog(QWidget* parent);
};

} // namespace rk4::gui
