#pragma once
// AnalogRoutines: the calibration of an analog point. The unit works in
// converter counts (0..255 for 0..5 volts); the installer works in decimal
// values. This converts both ways between the counts, slope and offset stored
// in the point and the texts the calibration dialog shows, and checks the
// texts before they are stored.

#include "core/common/prompter.h"
#include "core/database/database.h"

#include <array>
#include <cstdint>
#include <string>

namespace rk4 {

// Hysteresis steps, by index.
inline constexpr std::array<int, 10> kHysteresisPercent = {1, 2, 4, 5, 8, 10, 12, 15, 20, 25};

enum class CalibField {
    None,
    BinaryMinimum,
    BinaryMaximum,
    DecimalMinimum,
    DecimalMaximum,
    LowSetpoint,
    HighSetpoint,
    Hysteresis
};

struct CalibCheck {
    bool accepted = false;
    CalibField focus = CalibField::None;
};

// The working calibration record: the texts shown, and the hysteresis step.
struct Calibration {
    std::string binaryMaximum;
    std::string binaryMinimum;
    std::string decimalMaximum;
    std::string decimalMinimum;
    std::string lowSetpoint;
    std::string highSetpoint;
    std::string lowReset;  // shown only
    std::string highReset; // shown only
    int hysteresisIndex = 5;
    int hysteresisPercent = 10;
};

// Decimal places a value is held with: 1 from 100 up, 2 from 10 up, else 3.
int placesFor(const std::string& text);
// `text` as a scaled integer with `places` decimals; extra digits are cut.
int movedecimal(const std::string& text, int places);
// A scaled value as shown: sign, four digits, and the point before the last `places`.
std::string SetDecimal(int scaled, int places);
// Volts typed for a binary limit, as counts.
int VoltsToCounts(float volts);
// Counts in `range` for a hysteresis percentage; a fraction is rounded up only above one half.
int HysteresisCounts(int range, int percent);

class AnalogRoutines {
  public:
    // `volts` makes the binary limits volts 0..5 rather than counts.
    AnalogRoutines(PointRecord& point, bool volts);

    Calibration calib;
    bool volts() const { return voltsEntry; }
    // Switches the binary limits between counts and volts, converting their texts.
    void setVolts(bool volts);

    // The texts from the point's stored fields.
    void AlarmtoCalib();
    // Checks the texts in order; a refusal tells the user and names the field.
    CalibCheck CheckError(Prompter& prompter) const;
    // Stores the checked texts in the point: slope, offset, setpoints, resets.
    void CalibtoAlarm();
    // The hysteresis step changed: the reset texts follow.
    void FixHyst();

    // The stored point's count as its decimal text.
    std::string Convert2(int counts) const;
    // Counts for a decimal value on the texts' scale, cut to 255 at most.
    int Find2Value(float value) const;
    // The decimal value of a count on the texts' scale.
    float FindValue(int counts) const;
    // The hysteresis step from the point's stored reset level.
    void FindPercent();

    // The scaling line of the texts, for a plot: decimal value against counts.
    float binaryMinimumCounts() const { return binaryCounts(calib.binaryMinimum); }
    float binaryMaximumCounts() const { return binaryCounts(calib.binaryMaximum); }

  private:
    std::string binaryText(int counts) const;
    float binaryCounts(const std::string& text) const;
    float rawCounts(float value) const;

    PointRecord& point;
    bool voltsEntry;
};

} // namespace rk4
