// Runs benchmarks in rounds.
#pragma once

namespace bench {

// Runs the benchmarks that are registered, one after the other in their order, and all of them
// again for as many rounds as asked for: so those that are compared take turns, and noise hits
// both. Options: --rounds=N (default 5), --output=FILE, which gets a list with the report of each
// round, and those of Google Benchmark. Gives what main returns.
int RunInRounds(int argc, char** argv);

// The main of a program: what `program` throws is printed and ends it with 1.
int RunProgram(int (*program)(int argc, char** argv), int argc, char** argv);

}  // namespace bench
