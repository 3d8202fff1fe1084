#include <iostream>

#include "app/command_line.h"

int main(int argc, char** argv) {
  return sheafwork::RunCommandLine(argc, argv, std::cout, std::cerr);
}
