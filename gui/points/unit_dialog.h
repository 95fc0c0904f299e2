#pragma once
// UnitDialog: the words a point speaks after its value, chosen from the
// unit's vocabulary as a multiplier, a unit of measure and a rate.

#include "core/points/spoken_units.h"

#include <QDialog>

class QComboBox;
class QLabel;

namespace rk4::gui {

class UnitDialog : public QDialog {
    Q_OBJECT

  public:
    UnitDialog(const UnitSelectors& selectors, QWidget* parent = nullptr);
    UnitSelectors selectors() const;

  private:
    void showSpoken();

    QComboBox* combos[3] = {};
    QLabel* spokenLabel = nullptr;
    QLabel* newerUnitNote = nullptr;
};

} // namespace rk4::gui
