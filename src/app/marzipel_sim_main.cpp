// marzipel-sim [--home DIR] [SCRIPT]: runs a script against the real core on the in-memory
// platform. See README.md.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <string>

#include "app/sim/sim_driver.h"

namespace {

int usage() {
    std::cerr << "usage: marzipel-sim [--home DIR] [SCRIPT|-]\n";
    return 2;
}

std::filesystem::path freshHome() {
    std::random_device random;
    auto path = std::filesystem::temp_directory_path() /
                ("marzipel-sim-" + std::to_string(random()) + std::to_string(random()));
    std::filesystem::create_directories(path);
    return path;
}

}  // namespace

int main(int argc, char** argv) {
    std::string home;
    std::string scriptPath = "-";
    int i = 1;
    if (i < argc && std::string(argv[i]) == "--home") {
        if (i + 1 >= argc) return usage();
        home = argv[i + 1];
        i += 2;
    }
    if (i < argc) scriptPath = argv[i++];
    if (i < argc) return usage();

    std::ifstream file;
    if (scriptPath != "-") {
        file.open(scriptPath);
        if (!file) {
            std::cerr << "marzipel-sim: cannot read " << scriptPath << '\n';
            return 2;
        }
    }
    std::istream& script = scriptPath == "-" ? std::cin : file;

    std::filesystem::path temporaryHome;
    if (home.empty()) {
        temporaryHome = freshHome();
        home = temporaryHome.string();
    }
    int status = 0;
    {
        marzipel::SimDriver driver(home, std::cout);
        status = driver.run(script, std::cerr);
    }
    if (!temporaryHome.empty()) {
        std::error_code ignored;
        std::filesystem::remove_all(temporaryHome, ignored);
    }
    return status;
}
