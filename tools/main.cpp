#include "tools/command_line/command_line.h"

int main(int argc, char** argv) {
  return quorix::tools::run_command_line(argc, argv);
}
