// Reading the pictures that `shot` takes.
#pragma once

#include <array>
#include <filesystem>
#include <vector>

struct Picture {
    using Pixel = std::array<unsigned char, 3>;  // red, green, blue

    // Fails the test, and gives an empty picture, when the file is no PNG.
    explicit Picture(const std::filesystem::path& file);

    // A place that is not in the picture is black.
    Pixel at(unsigned x, unsigned y) const;

    unsigned width = 0;
    unsigned height = 0;

  private:
    std::vector<Pixel> pixels_;
};
