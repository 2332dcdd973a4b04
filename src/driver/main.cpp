#include "driver/run.h"

int main(int argc, char** argv) {
  return quorix::run_process(argc, argv);
}
