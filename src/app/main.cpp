// Vesk.

#include "ui/program.h"

int main(int argc, char** argv) {
    return vesk::leave(vesk::runProgram(argc, argv));
}
