#include "driver/siphondisplay.h"

int main(int argc, char** argv) {
  return siphons::RunSiphons(argc, argv);
}
