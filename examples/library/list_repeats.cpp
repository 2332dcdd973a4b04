// Lists the repeats of the sequences that are its arguments, one a line:
//
//   list_repeats TTACACACACACGG
//   0 2 12 CA 8 100.0
//
// The columns are the number of the sequence, start and end of the repeat (0-based, half-open), its
// unit, score and perfection.

#include <quorix/quorix.h>

#include <cstdio>
#include <exception>

int main(int argc, char** argv) {
  quorix::SearchSettings settings;
  settings.max_unit_length = 20;
  settings.unit_form = quorix::UnitForm::kAsFound;
  settings.detail = quorix::Detail::kFigures;
  try {
    for (int i = 1; i < argc; ++i) {
      quorix::find_repeats(argv[i], settings, [i](const quorix::Repeat& repeat) {
        std::printf("%d %llu %llu %s %d %.1f\n", i - 1,
                    static_cast<unsigned long long>(repeat.start),
                    static_cast<unsigned long long>(repeat.end), repeat.unit.c_str(),
                    static_cast<int>(repeat.score), repeat.perfection);
      });
    }
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "list_repeats: %s\n", failure.what());
    return 1;
  }
  return 0;
}
