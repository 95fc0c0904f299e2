#include "core/modem/dial_number.h"
#include "core/modem/line_errors.h"
#include "core/modem/modem_settings.h"
#include "core/modem/result_reader.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

using namespace rk4::modem;

TEST(DialNumber, LettersBecomeKeypadDigitsAndEverythingElseStays)
{
    EXPECT_EQ(MakeLettersIntoDigits("ABCDEFGHIJKLMNOPQRSTUVWXYZ"), "22233344455566671778889991");
    EXPECT_EQ(MakeLettersIntoDigits("abcdefghijklmnopqrstuvwxyz"), "22233344455566671778889991");
    EXPECT_EQ(MakeLettersIntoDigits("+1 (555) 12-#*,"), "+1 (555) 12-#*,");
}

TEST(DialNumber, TheEnteredFieldsMakeThePlusCountryAreaNumberForm)
{
    EXPECT_EQ(enteredNumber("1", "555", "CALL-NOW").text(), "+1(555)2255-669");
    EXPECT_EQ(enteredNumber("+1", "555", "CALL-NOW").text(), "+1(555)2255-669") << "no second +";
    // Each field holds no more than its length: 20, 8 and 30 characters.
    const DialledNumber cut = enteredNumber(std::string(25, '4'), "123456789", std::string(35, '7'));
    EXPECT_EQ(cut.country.size(), 20u);
    EXPECT_EQ(cut.area, "12345678");
    EXPECT_EQ(cut.number.size(), 30u);
}

TEST(DialNumber, TranslationDialsFromWhereTheToolIs)
{
    DialingLocation home;
    home.country = "1";
    home.area = "555";
    struct Case {
        const char* number;
        const char* outsideLine;
        const char* dialled;
    };
    const Case cases[] = {
        {"+1(555)2255-669", "", "2255669"},          // same area: the local number
        {"1(555)2255-669", "", "2255669"},           // the "+" is put in front first
        {"+1(212)555-0100", "", "12125550100"},      // another area: long distance
        {"+44(20)7946 0000", "", "011442079460000"}, // another country
        {"+1(555)2255-669", "9,", "9,2255669"},      // through an outside line
        {"+1()2255-669", "", "2255669"},             // no area: this area
        {"+4420794600", "", "0114420794600"},        // no area written: international
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.number);
        home.outsideLine = c.outsideLine;
        const Translation result = TranslateAddress(c.number, home);
        EXPECT_EQ(result.error, 0u);
        EXPECT_EQ(result.dialable, c.dialled);
    }
    EXPECT_EQ(TranslateAddress("+1(555)--", home).error, LINEERR_INVALADDRESS);
    EXPECT_EQ(TranslateAddress("+1x(555)2255", home).error, LINEERR_INVALADDRESS);
}

TEST(LineErrors, EveryNameFromTheFirstToTheLastIsKnown)
{
    int named = 0;
    for (std::uint32_t code = 0x80000000; code < 0x80000060; ++code)
        named += lineErrorName(code)[0] != 0;
    EXPECT_EQ(named, 84);
    EXPECT_EQ(ProcessTAPIError(0x80000001), " LINEERR_ALLOCATED");
    EXPECT_EQ(ProcessTAPIError(0x80000056), " LINEERR_NOMULTIPLEINSTANCE");
    EXPECT_EQ(ProcessTAPIError(0x8000004B), " LINEERR_RESOURCEUNAVAIL");
    EXPECT_EQ(ProcessTAPIError(LINEERR_REINIT), " LINEERR_REINIT");
    EXPECT_EQ(ProcessTAPIError(0x80000004), "") << "a code never assigned";
    EXPECT_EQ(ProcessTAPIError(0), "");
    EXPECT_EQ(ProcessTAPIError(0x80000057), "");
}

TEST(ResultReader, CutsTheModemsOutputIntoResults)
{
    ResultReader reader;
    const std::string output = "AT\r\r\nOK\r\n\r\nCONNECT 9600/ARQ\r\n3\r\x01\xFFRING\nNO DIALTONE\r";
    reader.feed(std::span(reinterpret_cast<const std::uint8_t*>(output.data()), output.size()));
    std::vector<ModemResult> results;
    while (auto line = reader.nextLine())
        results.push_back(parseResult(*line));
    EXPECT_EQ(results, (std::vector<ModemResult>{ModemResult::Other, ModemResult::Ok, ModemResult::Connect,
                                                 ModemResult::NoCarrier, ModemResult::Ring, ModemResult::NoDialtone}));
    EXPECT_EQ(parseResult("CONNECTED"), ModemResult::Other);
    EXPECT_EQ(parseResult("BUSY"), ModemResult::Busy);
    EXPECT_EQ(parseResult("RINGING"), ModemResult::Ringing);
    EXPECT_EQ(parseResult("9"), ModemResult::Other);

    // A line without an end is held back; a very long one is cut.
    reader.feed(std::vector<std::uint8_t>(500, 'A'));
    EXPECT_FALSE(reader.nextLine());
    reader.feed(std::vector<std::uint8_t>{'\r'});
    EXPECT_EQ(reader.nextLine()->size(), ResultReader::kLongestLine);
}

TEST(ModemSettings, KeepTheNumberAndTheLocationBetweenRuns)
{
    rk4::test::TempDir dir;
    ModemSettings settings;
    settings.lastNumber = enteredNumber("1", "555", "CALL-NOW");
    settings.location.area = "555";
    settings.location.outsideLine = "9,";
    settings.portSlot = 2;
    ASSERT_TRUE(settings.save(modemSettingsPath(dir.path())));
    const ModemSettings back = ModemSettings::load(modemSettingsPath(dir.path()));
    EXPECT_EQ(back.text(), settings.text());
    EXPECT_EQ(back.lastNumber.text(), "+1(555)2255-669");
    EXPECT_EQ(back.portSlot, 2);

    const ModemSettings odd = ModemSettings::parse("country = 12345678901234567890123\nport = COM 9\ninit =\njunk\n");
    EXPECT_EQ(odd.lastNumber.country.size(), kCountryCodeLength);
    EXPECT_EQ(odd.portSlot, kSearchAllPorts);
    EXPECT_EQ(odd.initString, kDefaultInitString);
}
