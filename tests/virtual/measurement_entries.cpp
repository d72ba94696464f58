#include "tests/virtual/entries.h"

namespace virtual_scope {
namespace {

// Of the immediate measurement; a slot differs in its first type.
const std::vector<Entry> kSubject = {
    {"SOUrce1", "SOURCE1", "CH1", "REF4", "REF4"},
    {"SOUrce2", "SOU2", "CH2", "HIS", "HISTOGRAM"},
    {"DELay:DIREction", "DELAY:DIRECTION", "FORWARDS", "BACKWARDS", "BACKWARDS"},
    {"DELay:EDGE1", "DELAY:EDGE1", "RISE", "FALL", "FALL"},
    {"DELay:EDGE2", "DELAY:EDGE2", "RISE", "FALL", "FALL"},
    {"NOISe", "NOISE", "HIGH", "LOW", "LOW"},
};

const std::vector<Entry> kLevels = {
    {"METHod", "METHOD", "HISTOGRAM", "MINMAX", "MINMAX"},
    {"REFLevel:METHod", "REFLEVEL:METHOD", "PERCENT", "ABSOLUTE", "ABSOLUTE"},
    {"REFLevel:PERCent:HIGH", "REFLEVEL:PERCENT:HIGH", "90.0000", "80", "80.0000"},
    {"REFLevel:PERCent:LOW", "REFLEVEL:PERCENT:LOW", "10.0000", "20", "20.0000"},
    {"REFLevel:PERCent:MID", "REFLEVEL:PERCENT:MID", "50.0000", "45", "45.0000"},
    {"REFLevel:PERCent:MID2", "REFLEVEL:PERCENT:MID2", "50.0000", "55", "55.0000"},
    {"REFLevel:ABSolute:HIGH", "REFLEVEL:ABSOLUTE:HIGH", "0.0000", "3", "3.0000"},
    {"REFLevel:ABSolute:LOW", "REFLEVEL:ABSOLUTE:LOW", "0.0000", "-1", "-1.0000"},
    {"REFLevel:ABSolute:MID", "REFLEVEL:ABSOLUTE:MID", "0.0000", "1", "1.0000"},
    {"REFLevel:ABSolute:MID2", "REFLEVEL:ABSOLUTE:MID2", "0.0000", "2", "2.0000"},
};

const std::vector<Entry> kOthers = {
    {"MEASUrement:IMMed:TYPe", "MEASUREMENT:IMMED:TYPE", "PERIOD", "PK2PK", "PK2PK"},
    // Nothing is measured of a channel that is not on the screen.
    {"MEASUrement:IMMed:VALue?", "MEASUREMENT:IMMED:TYPE MINIMUM;:SELECT:CH1 0;:MEASU:IMM:VAL",
     "9.91E+37", nullptr, nullptr},
    {"MEASUrement:IMMed:UNIts?", "MEASUREMENT:IMMED:UNITS", "\"s\"", nullptr, nullptr},
    {"MEASUrement:MEAS<x>:TYPe", "MEASUREMENT:MEAS8:TYPE", "UNDEFINED", "FREQ", "FREQUENCY"},
    {"MEASUrement:MEAS<x>:VALue?", "MEASUREMENT:MEAS1:VALUE", "9.91E+37", nullptr, nullptr},
    {"MEASUrement:MEAS<x>:UNIts?", "MEASUREMENT:MEAS1:UNITS", "\"\"", nullptr, nullptr},
    {"MEASUrement:MEAS<x>:STATE", "MEASUREMENT:MEAS2:STATE", "0", "ON", "1"},
    {"MEASUrement:MEAS<x>:COUNt?", "MEASUREMENT:MEAS2:COUNT", "0", nullptr, nullptr},
    {"MEASUrement:MEAS<x>:MAXimum?", "MEASUREMENT:MEAS2:MAXIMUM", "9.91E+37", nullptr, nullptr},
    {"MEASUrement:MEAS<x>:MEAN?", "MEASUREMENT:MEAS2:MEAN", "9.91E+37", nullptr, nullptr},
    {"MEASUrement:MEAS<x>:MINImum?", "MEASUREMENT:MEAS2:MINIMUM", "9.91E+37", nullptr, nullptr},
    {"MEASUrement:MEAS<x>:STDdev?", "MEASUREMENT:MEAS2:STDDEV", "9.91E+37", nullptr, nullptr},
    {"MEASUrement:GATing", "MEASUREMENT:GATING", "OFF", "ZOOM2", "ZOOM2"},
    {"MEASUrement:SOUrce<x>:SIGType", "MEASUREMENT:SOURCE2:SIGTYPE", "PULSE", "EYE", "EYE"},
    {"MEASUrement:STATIstics:MODe", "MEASUREMENT:STATISTICS:MODE", "OFF", "VALUEMEAN", "VALUEMEAN"},
    {"MEASUrement:STATIstics:COUNt", "MEASUREMENT:STATISTICS:COUNT", nullptr, "RESET", nullptr},
    {"MEASUrement:ANNOTation:IMMEDSTATE", "MEASUREMENT:ANNOTATION:IMMEDSTATE", "0", "1", "1"},
    {"MEASUrement:ANNOTation:STATE", "MEASUREMENT:ANNOTATION:STATE", "OFF", "MEAS8", "MEAS8"},
    {"MEASUrement:ANNOTation:TYPe", "MEASUREMENT:ANNOTATION:TYPE", "STANDARD", "DETAILED",
     "DETAILED"},
    {"MEASUrement:ANNOTation:NUMX?", "MEASUREMENT:ANNOTATION:NUMX", "0", nullptr, nullptr},
    {"MEASUrement:ANNOTation:NUMY?", "MEASUREMENT:ANNOTATION:NUMY", "0", nullptr, nullptr},
    {"MEASUrement:ANNOTation:X<x>?", "MEASUREMENT:ANNOTATION:X6", "0.0000", nullptr, nullptr},
    {"MEASUrement:ANNOTation:Y<x>?", "MEASUREMENT:ANNOTATION:Y1", "0.0000", nullptr, nullptr},
};

void Add(std::vector<Entry> entries, std::vector<Entry>& all) {
    all.insert(all.end(), entries.begin(), entries.end());
}

}  // namespace

std::vector<Entry> MeasurementEntries() {
    std::vector<Entry> all = kOthers;
    Add(Stemmed(kSubject, "MEASUrement:IMMed:", "MEASUREMENT:IMMED:"), all);
    Add(Stemmed(kSubject, "MEASUrement:MEAS<x>:", "MEASUREMENT:MEAS3:"), all);
    Add(Stemmed(kLevels, "MEASUrement:", "MEASUREMENT:"), all);
    Add(Stemmed(kLevels, "MEASUrement:MEAS<x>:", "MEASUREMENT:MEAS8:"), all);
    return all;
}

}  // namespace virtual_scope
