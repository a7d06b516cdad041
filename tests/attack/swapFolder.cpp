#include <fcntl.h>
#include <stdio.h>

#include <chrono>
#include <cstdlib>

/// swap-folder FOLDER LINK SECONDS: exchanges the two as fast as it can, an even number of times.
int main(int argc, char* argv[]) {
    if (argc != 4) return 2;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(std::atol(argv[3]));
    while (std::chrono::steady_clock::now() < end) {
        for (int i = 0; i < 2; ++i) {
            // Fails as long as the folder is not there.
            if (renameat2(AT_FDCWD, argv[1], AT_FDCWD, argv[2], RENAME_EXCHANGE) != 0) break;
        }
    }
    return 0;
}
