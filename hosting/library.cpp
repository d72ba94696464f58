// The shared library consists of the rooms below it. This file gives its target a source.
namespace kestrion {}
