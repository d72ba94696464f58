#include "tests/virtual/entries.h"

namespace virtual_scope {
namespace {

// A model whose last logic input stands under the pattern, and the one family with video.
constexpr const char* kOldLogic = "LK7054";
constexpr const char* kVideo = "HR5104";

// Of both events.
const std::vector<Entry> kBoth = {
    {"READY?", "READY", "1", nullptr, nullptr},
    {"LEVel:CH<x>", "LEVEL:CH3", "0.0000", "0.5", "500.0000E-3"},
    {"PULse:CLAss", "PULSE:CLASS", "GLITCH", "WIN", "WINDOW"},
    {"PULse:SOUrce", "PULSE:SOURCE", "CH1", "CH4", "CH4"},
    {"PULse:GLItch:POLarity", "PULSE:GLITCH:POLARITY", "POSITIVE", "EITHER", "EITHER"},
    {"PULse:GLItch:TRIGIF", "PULSE:GLITCH:TRIGIF", "ACCEPT", "REJECT", "REJECT"},
    {"PULse:GLItch:WIDth", "PULSE:GLITCH:WIDTH", "5.0000E-9", "1E-6", "1.0000E-6"},
    {"PULse:GLItch:QUAlify", "PULSE:GLITCH:QUALIFY", "OCCURS", "LOGIC", "LOGIC"},
    {"PULse:TIMEOut:POLarity", "PULSE:TIMEOUT:POLARITY", "STAYSHIGH", "STAYSLOW", "STAYSLOW"},
    {"PULse:TIMEOut:TIMe", "PULSE:TIMEOUT:TIME", "5.0000E-9", "2E-3", "2.0000E-3"},
    {"PULse:TIMEOut:QUAlify", "PULSE:TIMEOUT:QUALIFY", "OCCURS", "LOGIC", "LOGIC"},
    {"PULse:TRANsition:POLarity", "PULSE:TRANSITION:POLARITY", "POSITIVE", "NEGATIVE", "NEGATIVE"},
    {"PULse:TRANsition:WHEn", "PULSE:TRANSITION:WHEN", "FASTERTHAN", "SLOWERTHAN", "SLOWERTHAN"},
    {"PULse:TRANsition:DELTATime", "PULSE:TRANSITION:DELTATIME", "5.0000E-9", "3E-9", "3.0000E-9"},
    {"PULse:TRANsition:QUAlify", "PULSE:TRANSITION:QUALIFY", "OCCURS", "LOGIC", "LOGIC"},
    {"PULse:TRANsition:THReshold:LOW", "PULSE:TRANSITION:THRESHOLD:LOW", "800.0000E-3", "0.4",
     "400.0000E-3"},
    {"PULse:TRANsition:THReshold:HIGH", "PULSE:TRANSITION:THRESHOLD:HIGH", "2.0000", "2.5",
     "2.5000"},
    {"PULse:WIDth:POLarity", "PULSE:WIDTH:POLARITY", "POSITIVE", "NEGATIVE", "NEGATIVE"},
    {"PULse:WIDth:WHEn", "PULSE:WIDTH:WHEN", "WITHIN", "OUTSIDE", "OUTSIDE"},
    {"PULse:WIDth:LOWLimit", "PULSE:WIDTH:LOWLIMIT", "5.0000E-9", "1E-8", "10.0000E-9"},
    {"PULse:WIDth:HIGHLimit", "PULSE:WIDTH:HIGHLIMIT", "20.0000E-9", "1E-7", "100.0000E-9"},
    {"PULse:WIDth:QUAlify", "PULSE:WIDTH:QUALIFY", "OCCURS", "LOGIC", "LOGIC"},
    {"PULse:WINdow:TYPe", "PULSE:WINDOW:TYPE", "INSIDE", "OUTSIDE", "OUTSIDE"},
    {"PULse:RUNt:POLarity", "PULSE:RUNT:POLARITY", "POSITIVE", "EITHER", "EITHER"},
    {"PULse:RUNt:WHEn", "PULSE:RUNT:WHEN", "OCCURS", "WIDERTHAN", "WIDERTHAN"},
    {"PULse:RUNt:WIDth", "PULSE:RUNT:WIDTH", "5.0000E-9", "4E-9", "4.0000E-9"},
    {"PULse:RUNt:QUAlify", "PULSE:RUNT:QUALIFY", "OCCURS", "LOGIC", "LOGIC"},
    {"PULse:RUNt:LOGIc:INPut:CH<x>", "PULSE:RUNT:LOGIC:INPUT:CH2", "X", "HIGH", "HIGH", kOldLogic},
    {"PULse:RUNt:LOGIc:THReshold:CH<x>", "PULSE:RUNT:LOGIC:THRESHOLD:CH2", "0.0000", "1", "1.0000",
     kOldLogic},
    {"PULse:RUNt:THReshold:LOW", "PULSE:RUNT:THRESHOLD:LOW", "800.0000E-3", "-1", "-1.0000"},
    {"PULse:RUNt:THReshold:HIGH", "PULSE:RUNT:THRESHOLD:HIGH", "2.0000", "3", "3.0000"},
    {"PULse:WINdow:POLarity", "PULSE:WINDOW:POLARITY", "POSITIVE", "NEGATIVE", "NEGATIVE"},
    {"PULse:WINdow:WHEn", "PULSE:WINDOW:WHEN", "OCCURS", "LOGIC", "LOGIC"},
    {"PULse:WINdow:WIDth", "PULSE:WINDOW:WIDTH", "5.0000E-9", "4E-9", "4.0000E-9"},
    {"PULse:WINdow:QUAlify", "PULSE:WINDOW:QUALIFY", "OCCURS", "LOGIC", "LOGIC"},
    {"PULse:WINdow:LOGIc:INPut:CH<x>", "PULSE:WINDOW:LOGIC:INPUT:CH1", "X", "LOW", "LOW",
     kOldLogic},
    {"PULse:WINdow:LOGIc:THReshold:CH<x>", "PULSE:WINDOW:LOGIC:THRESHOLD:CH1", "0.0000", "1",
     "1.0000", kOldLogic},
    {"PULse:WINdow:THReshold:LOW", "PULSE:WINDOW:THRESHOLD:LOW", "800.0000E-3", "-1", "-1.0000"},
    {"PULse:WINdow:THReshold:HIGH", "PULSE:WINDOW:THRESHOLD:HIGH", "2.0000", "3", "3.0000"},
    {"LOGIc:CLAss", "LOGIC:CLASS", "PATTERN", "SETHOLD", "SETHOLD"},
    {"LOGIc:FUNCtion", "LOGIC:FUNCTION", "AND", "NAND", "NAND"},
    {"LOGIc:INPut:CH<x>", "LOGIC:INPUT:CH4", "X", "HIGH", "HIGH"},
    {"LOGIc:THReshold:CH<x>", "LOGIC:THRESHOLD:CH4", "0.0000", "1.5", "1.5000"},
    {"LOGIc:PATtern:INPut:CH<x>", "LOGIC:PATTERN:INPUT:CH4", "X", "LOW", "LOW"},
    {"LOGIc:PATtern:WHEn", "LOGIC:PATTERN:WHEN", "TRUE", "LESSTHAN", "LESSTHAN"},
    {"LOGIc:PATtern:WHEn:{LESSLimit|LESSThan}", "LOGIC:PATTERN:WHEN:LESSTHAN", "5.0000E-9", "1E-8",
     "10.0000E-9"},
    {"LOGIc:PATtern:WHEn:{MORELimit|MOREThan}", "LOGIC:PATTERN:WHEN:MORELIMIT", "5.0000E-9", "1E-8",
     "10.0000E-9"},
    {"LOGIc:STATE:INPut:CH<x>", "LOGIC:STATE:INPUT:CH4", "RISE", "FALL", "FALL"},
    {"LOGIc:STATE:WHEn", "LOGIC:STATE:WHEN", "TRUE", "FALSE", "FALSE"},
    {"LOGIc:SETHold:DATa:SOUrce", "LOGIC:SETHOLD:DATA:SOURCE", "CH1", "CH3", "CH3"},
    {"LOGIc:SETHold:DATa:THReshold", "LOGIC:SETHOLD:DATA:THRESHOLD", "0.0000", "TTL", "1.4000"},
    {"LOGIc:SETHold:CLOCk:SOUrce", "LOGIC:SETHOLD:CLOCK:SOURCE", "CH2", "CH4", "CH4"},
    {"LOGIc:SETHold:CLOCk:THReshold", "LOGIC:SETHOLD:CLOCK:THRESHOLD", "0.0000", "ECL", "-1.3000"},
    {"LOGIc:SETHold:CLOCk:EDGE", "LOGIC:SETHOLD:CLOCK:EDGE", "RISE", "FALL", "FALL"},
    {"LOGIc:SETHold:SETTime", "LOGIC:SETHOLD:SETTIME", "2.0000E-9", "4E-9", "4.0000E-9"},
    {"LOGIc:SETHold:HOLDTime", "LOGIC:SETHOLD:HOLDTIME", "2.0000E-9", "-1E-9", "-1.0000E-9"},
};

const std::vector<Entry> kGeneral = {
    {"TRIGger", "TRIGGER", nullptr, "FORCE", nullptr},
    {"TRIGger:STATE?", "TRIGGER:STATE", "TRIGGER", nullptr, nullptr},
    {"TRIGger:AUXLevel", "TRIGGER:AUXLEVEL", "0.0000", "0.25", "250.0000E-3"},
    {"TRIGger:LVLSrcpreference", "TRIGGER:LVLSRCPREFERENCE", "SRCDEPENDENT", "SRCINDEPENDENT",
     "SRCINDEPENDENT"},

    {"TRIGger:A", "TRIGGER:A", nullptr, "SETLEVEL", nullptr},
    {"TRIGger:A:TYPe", "TRIGGER:A:TYPE", "EDGE", "PULSE", "PULSE"},
    {"TRIGger:A:LEVel", "TRIGGER:A:LEVEL", "0.0000", "TTL", "1.4000"},
    {"TRIGger:A:MODe", "TRIGGER:A:MODE", "AUTO", "NORMAL", "NORMAL"},
    {"TRIGger:A:HOLDoff:BY", "TRIGGER:A:HOLDOFF:BY", "DEFAULT", "RANDOM", "RANDOM"},
    {"TRIGger:A:HOLDoff:TIMe", "TRIGGER:A:HOLDOFF:TIME", "1.5000E-6", "1E-3", "1.0000E-3"},
    {"TRIGger:A:HOLDoff:ACTual?", "TRIGGER:A:HOLDOFF:ACTUAL", "1.5000E-6", nullptr, nullptr},
    {"TRIGger:A:EDGE:SOUrce", "TRIGGER:A:EDGE:SOURCE", "CH1", "AUX", "AUXILIARY"},
    {"TRIGger:A:EDGE:SLOpe", "TRIGGER:A:EDGE:SLOPE", "RISE", "EITHER", "EITHER"},
    {"TRIGger:A:EDGE:COUPling", "TRIGGER:A:EDGE:COUPLING", "DC", "HFREJ", "HFREJ"},

    {"TRIGger:B", "TRIGGER:B", nullptr, "SETLEVEL", nullptr},
    {"TRIGger:B:TYPe", "TRIGGER:B:TYPE", "EDGE", "LOGIC", "LOGIC"},
    {"TRIGger:B:LEVel", "TRIGGER:B:LEVEL", "0.0000", "ECL", "-1.3000"},
    {"TRIGger:B:STATE", "TRIGGER:B:STATE", "0", "1", "1"},
    {"TRIGger:B:BY", "TRIGGER:B:BY", "TIME", "EVENTS", "EVENTS"},
    {"TRIGger:B:TIMe", "TRIGGER:B:TIME", "16.0000E-9", "1E-6", "1.0000E-6"},
    {"TRIGger:B:EVENTS:COUNt", "TRIGGER:B:EVENTS:COUNT", "1", "12", "12"},
    {"TRIGger:B:RESET:TYPe", "TRIGGER:B:RESET:TYPE", "NONE", "TIMEOUT", "TIMEOUT"},
    {"TRIGger:B:RESET:SOUrce", "TRIGGER:B:RESET:SOURCE", "CH1", "AUXILIARY", "AUXILIARY"},
    {"TRIGger:B:RESET:STATE", "TRIGGER:B:RESET:STATE", "HIGH", "LOW", "LOW"},
    {"TRIGger:B:RESET:THReshold", "TRIGGER:B:RESET:THRESHOLD", "0.0000", "1", "1.0000"},
    {"TRIGger:B:RESET:TIMEOut[:TIMe]", "TRIGGER:B:RESET:TIMEOUT", "5.0000E-9", "1E-3", "1.0000E-3"},
    {"TRIGger:B:RESET:TRANsition", "TRIGGER:B:RESET:TRANSITION", "RISE", "FALL", "FALL"},
    {"TRIGger:B:EDGE:SOUrce", "TRIGGER:B:EDGE:SOURCE", "CH1", "D15", "D15"},
    {"TRIGger:B:EDGE:SLOpe", "TRIGGER:B:EDGE:SLOPE", "RISE", "FALL", "FALL"},
    {"TRIGger:B:EDGE:COUPling", "TRIGGER:B:EDGE:COUPLING", "DC", "NOISE", "NOISEREJ"},

    {"TRIGger:A:COMMunication:SOUrce", "TRIGGER:A:COMMUNICATION:SOURCE", "CH1", "CH2", "CH2"},
    {"TRIGger:A:COMMunication:SOUrce:TYPe", "TRIGGER:A:COMMUNICATION:SOURCE:TYPE", "DATA", "RCLOCK",
     "RCLOCK"},
    {"TRIGger:A:COMMunication:STANdard", "TRIGGER:A:COMMUNICATION:STANDARD", "CUSTOM", "OC48FEC",
     "OC48FEC"},
    {"TRIGger:A:COMMunication:CLOCk:POLarity", "TRIGGER:A:COMMUNICATION:CLOCK:POLARITY", "RISE",
     "FALL", "FALL"},
    {"TRIGger:A:COMMunication:BITRate", "TRIGGER:A:COMMUNICATION:BITRATE", "2.5000E+9", "1E6",
     "1.0000E+6"},
    {"TRIGger:A:COMMunication:CODe", "TRIGGER:A:COMMUNICATION:CODE", "AMI", "NRZ", "NRZ"},

    {"TRIGger:A:SERial:SOUrce", "TRIGGER:A:SERIAL:SOURCE", "CH1", "CH4", "CH4"},
    {"TRIGger:A:SERial:CODe", "TRIGGER:A:SERIAL:CODE", "NRZ", "S8B10B", "S8B10B"},
    {"TRIGger:A:SERial:STANdard", "TRIGGER:A:SERIAL:STANDARD", "CUSTOM", "FC4250", "FC4250"},
    {"TRIGger:A:SERial:BITRate", "TRIGGER:A:SERIAL:BITRATE", "2.5000E+9", "1E9", "1.0000E+9"},
    {"TRIGger:A:SERial:{ERRORTYPe|ERRTYPe}", "TRIGGER:A:SERIAL:ERRORTYPE", "NONE", "DISPARITY",
     "DISPARITY"},
    {"TRIGger:A:SERial:DATa:FORMat", "TRIGGER:A:SERIAL:DATA:FORMAT", "BINARY", "HEX", "HEX"},
    {"TRIGger:A:SERial:DATa:PATtern", "TRIGGER:A:SERIAL:DATA:PATTERN", "\"\"", "\"10XX\"",
     "\"10XX\""},
    {"TRIGger:A:SERial:CLOCk:SOUrce", "TRIGGER:A:SERIAL:CLOCK:SOURCE", "CH1", "RECOV", "RECOVERED"},
    {"TRIGger:A:SERial:CLOCk:POLarity", "TRIGGER:A:SERIAL:CLOCK:POLARITY", "RISE", "FALL", "FALL"},
    {"TRIGger:A:SERial:CLOCk:LEVel", "TRIGGER:A:SERIAL:CLOCK:LEVEL", "0.0000", "1", "1.0000"},

    {"TRIGger:A:VIDeo:SOUrce", "TRIGGER:A:VIDEO:SOURCE", "CH1", "CH2", "CH2", kVideo},
    {"TRIGger:A:VIDeo:STANdard", "TRIGGER:A:VIDEO:STANDARD", "NTSC", "HD1080P25", "HD1080P25",
     kVideo},
    {"TRIGger:A:VIDeo:POLarity", "TRIGGER:A:VIDEO:POLARITY", "POSITIVE", "NEGATIVE", "NEGATIVE",
     kVideo},
    {"TRIGger:A:VIDeo:FIELD", "TRIGGER:A:VIDEO:FIELD", "ODD", "ALLLINES", "ALLLINES", kVideo},
    {"TRIGger:A:VIDeo:LINE", "TRIGGER:A:VIDEO:LINE", "1", "525", "525", kVideo},
    {"TRIGger:A:VIDeo:HOLDoff:FIELD", "TRIGGER:A:VIDEO:HOLDOFF:FIELD", "0.0000", "1", "1.0000",
     kVideo},
    {"TRIGger:A:VIDeo:CUSTom:FORMat", "TRIGGER:A:VIDEO:CUSTOM:FORMAT", "INTERLACED", "PROGRESSIVE",
     "PROGRESSIVE", kVideo},
    {"TRIGger:A:VIDeo:CUSTom:SCAN", "TRIGGER:A:VIDEO:CUSTOM:SCAN", "RATE1", "RATE5", "RATE5",
     kVideo},
};

const std::vector<Entry> kOfEachCode = {
    {"PULSEForm", "PULSEFORM", "PLUSONE", "EYEDIAGRAM", "EYEDIAGRAM"},
    {"THReshold:HIGH", "THRESHOLD:HIGH", "500.0000E-3", "1", "1.0000"},
    {"THReshold:LOW", "THRESHOLD:LOW", "-500.0000E-3", "-1", "-1.0000"},
};

void Add(std::vector<Entry> entries, std::vector<Entry>& all) {
    all.insert(all.end(), entries.begin(), entries.end());
}

}  // namespace

std::vector<Entry> TriggerEntries() {
    std::vector<Entry> all = kGeneral;
    Add(Stemmed(kBoth, "TRIGger:A:", "TRIGGER:A:"), all);
    Add(Stemmed(kBoth, "TRIGger:B:", "TRIGGER:B:"), all);
    for (const std::string code : {"AMI", "HDB3", "B3ZS", "B6ZS", "B8ZS", "CMI", "MLT3", "NRZ"}) {
        Add(Stemmed(kOfEachCode, "TRIGger:A:COMMunication:" + code + ':',
                    "TRIGGER:A:COMMUNICATION:" + code + ':'),
            all);
    }
    return all;
}

}  // namespace virtual_scope
