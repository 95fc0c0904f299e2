#include "core/points/analog.h"

#include "core/points/point_editor.h"
#include "tests/support/scripted_prompter.h"

#include <functional>
#include <gtest/gtest.h>

namespace rk4 {
namespace {

PointRecord newAnalogPoint()
{
    PointRecord point;
    point.type = kPointAnalog;
    ApplyTypeDefaults(point);
    return point;
}

TEST(AnalogRoutines, DefaultsReadAsTextsAndStoreBackTheSameBytes)
{
    PointRecord point = newAnalogPoint();
    AnalogRoutines analog(point, false);
    EXPECT_EQ(analog.calib.binaryMinimum, "0");
    EXPECT_EQ(analog.calib.binaryMaximum, "255");
    EXPECT_EQ(analog.calib.decimalMinimum, "+000.0");
    EXPECT_EQ(analog.calib.decimalMaximum, "+100.0");
    EXPECT_EQ(analog.calib.lowSetpoint, "+025.0");
    EXPECT_EQ(analog.calib.highSetpoint, "+075.0");
    EXPECT_EQ(analog.calib.lowReset, "+034.5"); // 88 counts: 257003 * 88 / 65536 = 345.09
    EXPECT_EQ(analog.calib.hysteresisIndex, 5);
    EXPECT_EQ(analog.calib.hysteresisPercent, 10);

    point = PointRecord{};
    point.type = kPointAnalog;
    point.inactive = 1; // the calibration leaves the common fields alone
    analog.CalibtoAlarm();
    EXPECT_EQ(point.slope, (std::array<std::uint8_t, 3>{3, 235, 235})); // 65536000 / 255 = 257003
    EXPECT_EQ(point.lowSetpoint, 63);
    EXPECT_EQ(point.highSetpoint, 191);
    EXPECT_EQ(point.lowReset, 88);
    EXPECT_EQ(point.highReset, 166);
    EXPECT_EQ(point, newAnalogPoint());
}

TEST(AnalogRoutines, NumbersFollowTheirMagnitudes)
{
    EXPECT_EQ(HysteresisCounts(255, 10), 25); // 25.5 stays 25
    EXPECT_EQ(HysteresisCounts(255, 25), 64); // 63.75
    EXPECT_EQ(HysteresisCounts(10, 5), 0);
    EXPECT_EQ(std::min(placesFor("50.5"), placesFor("0")), 2);
    EXPECT_EQ(placesFor("150"), 1);
    EXPECT_EQ(placesFor("-0.5"), 3);
    EXPECT_EQ(movedecimal("50.5", 2), 5050);
    EXPECT_EQ(movedecimal("-12.345", 2), -1234);
    EXPECT_EQ(movedecimal("+7", 3), 7000);
    EXPECT_EQ(SetDecimal(5050, 2), "+50.50");
    EXPECT_EQ(SetDecimal(-5, 3), "-0.005");
    EXPECT_EQ(VoltsToCounts(2.5f), 128); // 127.5
    EXPECT_EQ(VoltsToCounts(5.0f), 255);
    EXPECT_EQ(VoltsToCounts(1.0f), 51);
}

TEST(AnalogRoutines, CalibrationOfAnotherRangeStoresItsSlopeAndPlaces)
{
    PointRecord point = newAnalogPoint();
    AnalogRoutines analog(point, true);
    EXPECT_EQ(analog.calib.binaryMaximum, "5.00");
    analog.calib.binaryMinimum = "1.0"; // 51 counts
    analog.calib.decimalMinimum = "0";
    analog.calib.decimalMaximum = "50.5";
    analog.calib.lowSetpoint = "10";
    analog.calib.highSetpoint = "40.25";
    analog.calib.hysteresisIndex = 3; // 5 %
    test::ScriptedPrompter prompter;
    ASSERT_TRUE(analog.CheckError(prompter).accepted);
    analog.CalibtoAlarm();
    EXPECT_EQ(point.decimalPlaces, 2);
    EXPECT_EQ(point.binaryMinimum, 51);
    EXPECT_EQ(point.decimalMaximum, 5050);
    // 5050 * 65536 / 204 = 1622337.2: 0x18C141
    EXPECT_EQ(point.slope, (std::array<std::uint8_t, 3>{0x18, 0xC1, 0x41}));
    EXPECT_EQ(point.lowSetpoint, 91);   // 51 + 10 * 204 / 50.5 = 91.4
    EXPECT_EQ(point.highSetpoint, 213); // 51 + 40.25 * 204 / 50.5 = 213.6
    EXPECT_EQ(point.lowReset, 101);     // h = 10.2 counts: 10
    EXPECT_EQ(point.highReset, 203);
    EXPECT_EQ(point.lowSetpointDecimal, 1000);
    EXPECT_EQ(point.highSetpointDecimal, 4025);
}

TEST(AnalogRoutines, PercentAboveTheLargestStepIsTenWithTheStepKept)
{
    PointRecord point = newAnalogPoint();
    point.lowReset = 63 + 80; // 31 %
    AnalogRoutines analog(point, false);
    EXPECT_EQ(analog.calib.hysteresisPercent, 10);
    EXPECT_EQ(analog.calib.hysteresisIndex, 5) << "the step of the defaults read before";
    point.lowReset = 63 + 3; // 1.18 %
    analog.FindPercent();
    EXPECT_EQ(analog.calib.hysteresisIndex, 0);
    EXPECT_EQ(analog.calib.hysteresisPercent, 1);
}

TEST(AnalogRoutines, CheckErrorRefusesInItsOrder)
{
    struct Case {
        std::function<void(Calibration&)> change;
        const char* text;
        CalibField focus;
    };
    const Case cases[] = {
        {[](Calibration& c) { c.binaryMinimum = "x", c.decimalMaximum = "y"; },
         "The Binary Minimum is not a valid number.", CalibField::BinaryMinimum},
        {[](Calibration& c) { c.binaryMaximum = "1-"; }, "The Binary Maximum is not a valid number.",
         CalibField::BinaryMaximum},
        {[](Calibration& c) { c.decimalMinimum = "a"; }, "The Decimal Minimum is not a valid number.",
         CalibField::DecimalMinimum},
        {[](Calibration& c) { c.decimalMaximum = "a"; }, "The Decimal Maximum is not a valid number.",
         CalibField::DecimalMaximum},
        {[](Calibration& c) { c.lowSetpoint = "a"; }, "The Low Setpoint is not a valid number.",
         CalibField::LowSetpoint},
        {[](Calibration& c) { c.highSetpoint = "a"; }, "The High Setpoint is not a valid number.",
         CalibField::HighSetpoint},
        {[](Calibration& c) { c.binaryMinimum = "255.5"; }, "The Binary Minimum and Binary Maximum cannot be equal.",
         CalibField::BinaryMinimum},
        {[](Calibration& c) { c.decimalMinimum = "0.2", c.decimalMaximum = "0.8"; },
         "The Decimal Minimum and Decimal Maximum cannot be equal.", CalibField::DecimalMinimum},
        {[](Calibration& c) { c.highSetpoint = "1000"; },
         "High Setpoint is too large.  It cannot have more digits to the left of the decimal place than the Decimal "
         "Maximum.",
         CalibField::HighSetpoint},
        {[](Calibration& c) { c.lowSetpoint = "-10"; }, "Low Setpoint is too small.  It must be greater than +000.0",
         CalibField::LowSetpoint},
        {[](Calibration& c) { c.lowSetpoint = "101"; }, "Low Setpoint is too large.  It must be less than +100.0",
         CalibField::LowSetpoint},
        {[](Calibration& c) { c.highSetpoint = "-5"; }, "High Setpoint is too small.  It must be greater than +000.0",
         CalibField::HighSetpoint},
        {[](Calibration& c) { c.highSetpoint = "101"; }, "High Setpoint is too large.  It must be less than +100.0",
         CalibField::HighSetpoint},
        {[](Calibration& c) { c.highSetpoint = "100.4"; }, "High Setpoint is too large.  It must be less than +100.0",
         CalibField::HighSetpoint}, // 256 counts
        {[](Calibration& c) { c.binaryMaximum = "256"; }, "Binary Maximum cannot be greater than 255.",
         CalibField::BinaryMaximum},
        {[](Calibration& c) { c.binaryMaximum = "100", c.binaryMinimum = "200"; },
         "Binary Maximum cannot be less than Binary Minimum.", CalibField::BinaryMaximum},
        {[](Calibration& c) { c.decimalMaximum = "-50", c.lowSetpoint = "-40", c.highSetpoint = "-10"; },
         "Decimal Maximum cannot be less than Decimal Minimum.", CalibField::DecimalMaximum},
        {[](Calibration& c) { c.decimalMaximum = "1000.0"; }, "The Decimal Maximum value cannot be greater than 999.9.",
         CalibField::DecimalMaximum},
        {[](Calibration& c) { c.decimalMinimum = "-1000"; }, "The Decimal Minimum value cannot be less than -999.9.",
         CalibField::DecimalMinimum},
        // More digits than a float holds are still just too large.
        {[](Calibration& c) { c.decimalMaximum = std::string(40, '9'); },
         "The Decimal Maximum value cannot be greater than 999.9.", CalibField::DecimalMaximum},
        {[](Calibration& c) { c.lowSetpoint = "45", c.highSetpoint = "55", c.hysteresisIndex = 9; },
         "The high alarm reset value will be less than the low setpoint.  Reduce hysteresis or change setpoints.",
         CalibField::Hysteresis},
    };
    for (const Case& c : cases) {
        PointRecord point = newAnalogPoint();
        AnalogRoutines analog(point, false);
        c.change(analog.calib);
        test::ScriptedPrompter prompter;
        const CalibCheck check = analog.CheckError(prompter);
        EXPECT_FALSE(check.accepted) << c.text;
        EXPECT_EQ(check.focus, c.focus) << c.text;
        ASSERT_EQ(prompter.messages().size(), 1u) << c.text;
        EXPECT_EQ(prompter.messages()[0].text, c.text);
        EXPECT_EQ(prompter.messages()[0].icon, Icon::Error);
    }
    PointRecord point = newAnalogPoint();
    AnalogRoutines volts(point, true);
    volts.calib.binaryMaximum = "5.5";
    test::ScriptedPrompter prompter;
    EXPECT_EQ(volts.CheckError(prompter).focus, CalibField::BinaryMaximum);
    EXPECT_EQ(prompter.texts(), std::vector<std::string>{"Binary Maximum cannot be greater than 5 volts."});
}

} // namespace
} // namespace rk4
