// slipbook-genlogbook N OUT.db [SEED]: writes a logbook of N runs made from the built template.
#include "logbookgen.h"

#include <QString>
#include <cstdio>
#include <exception>

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: slipbook-genlogbook RUNS OUT.db [SEED]\n");
        return 2;
    }
    try {
        slipbook::bench::GenerateLogbook(slipbook::bench::BuiltTemplatePath(),
                                         QString::fromLocal8Bit(argv[2]), std::atoi(argv[1]),
                                         argc > 3 ? static_cast<unsigned>(std::atoi(argv[3])) : 1u);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "slipbook-genlogbook: %s\n", e.what());
        return 1;
    }
    return 0;
}
