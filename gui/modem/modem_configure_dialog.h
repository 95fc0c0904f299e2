#pragma once
// The telephone number of the distant unit: country code, area code and
// number. On OK each field's letters become keypad digits.

#include "core/modem/dial_number.h"

#include <QDialog>

class QLabel;
class QLineEdit;

namespace rk4::gui {

class ModemConfigureDialog : public QDialog {
    Q_OBJECT

  public:
    ModemConfigureDialog(const modem::DialledNumber& last, QWidget* parent = nullptr);

    // The number as entered, after OK.
    modem::DialledNumber number() const;

  private:
    void preview();

    QLineEdit* countryEdit;
    QLineEdit* areaEdit;
    QLineEdit* numberEdit;
    QLabel* dialledLabel;
};

} // namespace rk4::gui
