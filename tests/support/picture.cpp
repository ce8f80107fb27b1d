#include "picture.h"

#include <gtest/gtest.h>
#include <png.h>

Picture::Picture(const std::filesystem::path& file) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&image, file.c_str()) == 0) {
        ADD_FAILURE() << file << ": " << image.message;
        return;
    }
    image.format = PNG_FORMAT_RGB;
    pixels_.resize(std::size_t{image.width} * image.height);
    if (png_image_finish_read(&image, nullptr, pixels_.data(), 0, nullptr) == 0) {
        ADD_FAILURE() << file << ": " << image.message;
        return;
    }
    width = image.width;
    height = image.height;
}

Picture::Pixel Picture::at(unsigned x, unsigned y) const {
    return x < width && y < height ? pixels_[std::size_t{y} * width + x] : Pixel{};
}
