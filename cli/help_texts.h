// What stands below the options in the help of the program and of each command.
#pragma once

namespace kestrion::cli {

inline constexpr const char* kMainFooter = R"(Examples:
  kestrion info
  kestrion capture --source CH1,CH2 --points 10000 --csv run.csv --svg run.svg
  kestrion measure --source CH1 --type frequency,rise
  kestrion --resource TCPIP::192.168.0.20::INSTR scpi "*IDN?"
  kestrion models

Without --resource the commands talk to a virtual instrument in this process.
--resource, --options and --timeout work before and after the command's name.
'kestrion COMMAND --help' tells more about a command.)";

inline constexpr const char* kInfoFooter = R"(Examples:
  kestrion info
  kestrion info --resource TCPIP::192.168.0.20::4000::SOCKET
  kestrion info --options "simulate=true,DriverSetup=Model=PL7254C"

'kestrion --help' lists --resource, --options and --timeout.)";

inline constexpr const char* kCaptureFooter =
    R"(Sources are CH1 to CH4, MATH1 to MATH4 and REF1 to REF4. One that is off is switched on.
A summary goes to standard output and, where that is a terminal, a small plot.
The array file of --npy has its time base in a .json file beside it.

Examples:
  kestrion capture
  kestrion capture --source CH1,CH2 --points 100000 --csv run.csv
  kestrion capture --source CH1,MATH1 --svg run.svg --title "Supply ripple"
  kestrion capture --as-is --npy run.npy --resource TCPIP::192.168.0.20::INSTR

'kestrion --help' lists --resource, --options and --timeout.)";

inline constexpr const char* kMeasureFooter =
    R"(The instrument measures, after one new acquisition. Sources are CH1 to CH4, MATH1 to
MATH4 and REF1 to REF4. One that is off is switched on. Measurements are frequency,
period, pk2pk, amplitude, maximum, minimum, mean, rms, rise, fall and pduty, which are
made where none is named, and high, low, pwidth, nwidth, nduty, povershoot, novershoot,
cmean, crms, area, carea and burst. One that the signal doesn't have is "none", or null
with --json.

Examples:
  kestrion measure
  kestrion measure --source CH1,CH2 --type frequency,rise,fall
  kestrion measure --all --json
  kestrion measure --as-is --resource TCPIP::192.168.0.20::INSTR

'kestrion --help' lists --resource, --options and --timeout.)";

inline constexpr const char* kScpiFooter =
    R"(A command with a question mark is a query, and its response is printed. Several
commands run one after the other in one session.

Examples:
  kestrion scpi "*IDN?"
  kestrion scpi "CH1:SCALE 0.5" "CH1:SCALE?"
  kestrion scpi --check "ACQUIRE:MODE AVERAGE"

'kestrion --help' lists --resource, --options and --timeout.)";

inline constexpr const char* kModelsFooter = R"(Needs no instrument.

Examples:
  kestrion models
  kestrion models --plain | grep -c PL)";

}  // namespace kestrion::cli
