// TRIGger:A: the communication, serial and video triggers.
#include <string>

#include "virtual/commands/families.h"
#include "virtual/commands/rows.h"
#include "virtual/commands/trigger_rows.h"
#include "virtual/text.h"

namespace virtual_scope {
namespace {

constexpr FamilySet kHeronOnly = Families(Family::kHeron);
constexpr Keyword kChannel = {kTriggerChannelWords};
constexpr Keyword kClockPolarity = {"FALL|RISe", 1};
constexpr Real kBitRate = {1, 100e9, 2.5e9};

constexpr std::string_view kLineCodes = "AMI|HDB3|B3ZS|B6ZS|B8ZS|CMI|MLT3|NRZ";
constexpr std::string_view kPulseForms = "PLUSOne|MINUSOne|ZERO|EYEdiagram";
constexpr std::string_view kCommunicationStandards =
    "CUSTom|DS1|DS1A|DS1C|DS2|DS3|DS4NA|STS1|STS3|E0|E1|E2|E3|E4|STM1E|G703DS1|G703DS2|G70332MB|"
    "G70397MB|OC1|OC3|OC12|OC48|OC48FEC|ENET100BASETX|ENET100BASEFX|ENET1000BASEX|FDDI|FC133|FC266|"
    "FC531|FC1063|FC2125|FC4250|INFINIBAND2500|IEEE1394S400B|IEEE1394S800B|IEEE1394S1600B|"
    "RAPIDIO500|RAPIDIO750|RAPIDIO1000|RAPIDIO1500|RAPIDIO2000|SERIALRAPIDIO1250|"
    "SERIALRAPIDIO2500|SERIALRAPIDIO3125|SATA1500|SATA3000|PCIE2500|XAUI3125|VIDEO143|VIDEO270|"
    "SAS1500|SAS3000|FBDIMM3200|FBDIMM4000|FBDIMM4800|CPRI614|CPRI1229|CPRI2458|CPRI3072|OBSAI768|"
    "OBSAI1536|OBSAI3072|VIDEO360|VIDEO1485|VIDEO2970|PCIE5000|SATA6000|SAS6000|USB5000";
constexpr std::string_view kSerialStandards =
    "CUSTom|FC133|FC266|FC531|FC1063|FC2125|ENET1000BASEX|INFINIBAND2500|IEEE1394S400B|"
    "IEEE1394S800B|IEEE1394S1600B|SATA1500|PCIE2500|SERIALRAPIDIO1250|SERIALRAPIDIO2500|"
    "SERIALRAPIDIO3125|XAUI3125|FC4250";
constexpr std::string_view kSerialErrors = "NONE|CHARacter|DISParity|FRAMe|BIT|ANY";
constexpr std::string_view kVideoStandards =
    "NTSc|PAL|SECAM|HD480P60|HD576P50|HD720P60|HD1080I50|HD1080I60|HD1080P24|HD1080P25|CUSTom";
constexpr std::string_view kVideoFields = "ODD|EVEN|ALLFields|ALLLines|NUMERic";
constexpr std::string_view kScanRates = "RATE1|RATE2|RATE3|RATE4|RATE5";

std::vector<CommandRow> Communication() {
    std::vector<CommandRow> rows = {
        CommandRow("SOUrce", kChannel),
        CommandRow("SOUrce:TYPe", Keyword{"DATa|CLOCk|RCLOCk"}),
        CommandRow("STANdard", Keyword{kCommunicationStandards}),
        CommandRow("CLOCk:POLarity", kClockPolarity),
        CommandRow("BITRate", kBitRate),
        CommandRow("CODe", Keyword{kLineCodes}),
    };
    // Each code has a pulse form and thresholds of its own.
    for (const std::string_view code : Split(kLineCodes, '|')) {
        const std::string stem = std::string(code) + ':';
        rows.emplace_back(stem + "PULSEForm", Keyword{kPulseForms});
        rows.emplace_back(stem + "THReshold:HIGH", Real{-100, 100, 0.5});
        rows.emplace_back(stem + "THReshold:LOW", Real{-100, 100, -0.5});
    }
    return rows;
}

std::vector<CommandRow> Serial() {
    return {
        CommandRow("SOUrce", kChannel).LackedBy(kHeronOnly),
        CommandRow("CODe", Keyword{"NRZ|S8B10B"}).LackedBy(kHeronOnly),
        CommandRow("STANdard", Keyword{kSerialStandards}).LackedBy(kHeronOnly),
        CommandRow("BITRate", kBitRate).LackedBy(kHeronOnly),
        CommandRow("{ERRORTYPe|ERRTYPe}", Keyword{kSerialErrors}).LackedBy(kHeronOnly),
        CommandRow("DATa:FORMat", Keyword{"BINary|HEX"}).LackedBy(kHeronOnly),
        CommandRow("DATa:PATtern", Text{"", 256}).LackedBy(kHeronOnly),
        CommandRow("CLOCk:SOUrce", Keyword{"CH1|CH2|CH3|CH4|RECOVered"}).LackedBy(kHeronOnly),
        CommandRow("CLOCk:POLarity", kClockPolarity).LackedBy(kHeronOnly),
        CommandRow("CLOCk:LEVel", kTriggerLevels).LackedBy(kHeronOnly),
    };
}

std::vector<CommandRow> Video() {
    return {
        CommandRow("SOUrce", kChannel).LackedBy(kFamiliesWithoutVideo),
        CommandRow("STANdard", Keyword{kVideoStandards}).LackedBy(kFamiliesWithoutVideo),
        CommandRow("POLarity", Keyword{"POSITIVe|NEGAtive"}).LackedBy(kFamiliesWithoutVideo),
        CommandRow("FIELD", Keyword{kVideoFields}).LackedBy(kFamiliesWithoutVideo),
        CommandRow("LINE", Integer{1, 3000, 1}).LackedBy(kFamiliesWithoutVideo),
        CommandRow("HOLDoff:FIELD", Real{0, 8.5, 0}).LackedBy(kFamiliesWithoutVideo),
        CommandRow("CUSTom:FORMat", Keyword{"INTERLaced|PROGressive"})
            .LackedBy(kFamiliesWithoutVideo),
        CommandRow("CUSTom:SCAN", Keyword{kScanRates}).LackedBy(kFamiliesWithoutVideo),
    };
}

}  // namespace

std::vector<CommandRow> SerialTriggerRows() {
    std::vector<CommandRow> rows;
    Append(Under("COMMunication:", Communication()), rows);
    Append(Under("SERial:", Serial()), rows);
    Append(Under("VIDeo:", Video()), rows);
    return rows;
}

}  // namespace virtual_scope
