// kzb tour: every family's calls on built-in examples.
#include "kzb.h"

namespace kzb {
namespace {

int run_tour(const Args&) {
  tour_encoding();
  tour_strings();
  tour_numeric();
  tour_datetime();
  tour_paths();
  tour_textfile();
  tour_status();
  tour_cmdline();
  return kOk;
}

}  // namespace

extern const Command kCommand_tour;
const Command kCommand_tour = {"tour", R"usage(tour
  Runs every family of the library on built-in examples and writes what
  each call gave.
  Example: kzb tour
)usage",
                               run_tour};

}  // namespace kzb
