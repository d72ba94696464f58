// ZOOM and CURSor: what is marked on the screen.
#include "virtual/command_table.h"
#include "virtual/record.h"

namespace virtual_scope {
namespace {

constexpr Real kZoomPosition = {0, 100, 50};  // percent of the record
constexpr Real kZoomScale = {1, 100'000, 1};  // times
constexpr Real kCursorTime = {-1e6, 1e6, 0};

}  // namespace

std::vector<CommandRow> DisplayCommands() {
    return {
        CommandRow("ZOOm:MODe", Flag{}),
        CommandRow("ZOOm:CH<x>:HORizontal:POSition", kZoomPosition),
        CommandRow("ZOOm:CH<x>:HORizontal:SCAle", kZoomScale),
        CommandRow("ZOOm:MATH<x>:HORizontal:POSition", kZoomPosition),
        CommandRow("ZOOm:MATH<x>:HORizontal:SCAle", kZoomScale),
        CommandRow("ZOOm:REF<x>:HORizontal:POSition", kZoomPosition),
        CommandRow("ZOOm:REF<x>:HORizontal:SCAle", kZoomScale),
        CommandRow("CURSor:SOUrce", Keyword{kSourceWords}),
        CommandRow("CURSor:VBArs:POSition<x>", kCursorTime),
    };
}

}  // namespace virtual_scope
