// SPDX-License-Identifier: MIT
#include <cstddef>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "YGConfigManager/graphics/ImageFileReader.h"

#include "files/TemporaryFolder.h"
#include "graphics/CountedMemory.h"
#include "graphics/ImageFiles.h"

namespace {

using namespace yg::testing;
using yg::ImageFileReader;
using Outcome = ImageFileReader::Outcome;

/// Declares so many pixels, one bit each, and holds none.
std::string damagedPng(std::uint32_t width, std::uint32_t height, bool isInterlaced = false) {
    return pngHeader(width, height, PngColor::gray, 1, isInterlaced) +
           pngChunk("IDAT", std::string(std::size_t{width} * height / 8 / 1000, 'x')) +
           pngChunk("IEND", "");
}

/// A gray file that declares 8192 times 8192 pixels and has the codes of a few.
std::string damagedJpeg(bool isProgressive) {
    std::string file = flatJpeg(64, 64, JCS_GRAYSCALE, {1}, [&](jpeg_compress_struct& jpeg) {
        if (isProgressive)
            jpeg_simple_progression(&jpeg);
    });
    const std::size_t size = file.find(isProgressive ? "\xFF\xC2" : "\xFF\xC0") + 5;
    file.replace(size, 4, std::string("\x20\0\x20\0", 4));
    return file + std::string(1 << 20, '\0');
}

class ImageFileReading : public testing::Test {
protected:
    Outcome read(const std::string& name) { return reader.read(root.at(name)).outcome; }

    /// What becomes of a small image after this one, which is unreadable.
    Outcome outcomeAfter(const std::string& bytes) {
        root.write("file", bytes);
        root.write("small.png", smallPng());
        ImageFileReader fresh;
        EXPECT_EQ(fresh.read(root.at("file")).outcome, Outcome::unreadable);
        return fresh.read(root.at("small.png")).outcome;
    }

    yg::files::TemporaryFolder root;
    ImageFileReader reader;
};

TEST_F(ImageFileReading, CountsWhatADamagedFileDeclares) {
    EXPECT_EQ(outcomeAfter(damagedPng(8192, 8192)), Outcome::tooManyPixels);
    EXPECT_EQ(outcomeAfter(damagedPng(8192, 8192, true)), Outcome::tooManyPixels);
    EXPECT_EQ(outcomeAfter(damagedJpeg(false)), Outcome::tooManyPixels);
    EXPECT_EQ(outcomeAfter(damagedJpeg(true)), Outcome::tooManyPixels);
    EXPECT_EQ(outcomeAfter(damagedPng(8192, 8191)), Outcome::read);
}

TEST_F(ImageFileReading, CountsNoPixelsOfWhatItsHeaderRefuses) {
    EXPECT_EQ(outcomeAfter(pngHeader(8192, 8192, PngColor::rgba, 8) + pngEnd("x")), Outcome::read);
    EXPECT_EQ(outcomeAfter(damagedPng(8192, 8193)), Outcome::read);
    EXPECT_EQ(outcomeAfter(damagedJpeg(true).substr(0, 1000)), Outcome::read);
    EXPECT_EQ(outcomeAfter("no image"), Outcome::read);
}

TEST_F(ImageFileReading, AddsUpThePixelsOfAllFiles) {
    for (const char* name : {"a", "b", "c", "d"}) {
        root.write(name, damagedPng(4096, 4096));
        EXPECT_EQ(read(name), Outcome::unreadable);
    }
    EXPECT_EQ(read("e"), Outcome::tooManyPixels);
}

#ifndef YG_NO_COUNTED_MEMORY
TEST_F(ImageFileReading, LooksAtAFileOnceUnderAllItsNames) {
    root.write("a.png", damagedPng(2048, 2048));
    root.makeFolder("b");
    std::filesystem::create_symlink("a.png", root.at("link.png"));
    std::filesystem::create_hard_link(root.at("a.png"), root.at("other.png"));
    const std::size_t before = bytesTaken();
    EXPECT_EQ(read("a.png"), Outcome::unreadable);
    const std::size_t afterOne = bytesTaken();
    EXPECT_GT(afterOne - before, std::size_t{2048} * 2048 * 4);
    for (int i = 0; i < 100; ++i) {
        for (const char* name : {"a.png", "b/../a.png", "link.png", "other.png"}) {
            EXPECT_EQ(read(name), Outcome::unreadable);
        }
    }
    EXPECT_LT(bytesTaken() - afterOne, 1U << 20);
}
#endif

TEST_F(ImageFileReading, MissingFilesAndFoldersAreUnreadable) {
    root.makeFolder("folder");
    for (const char* name : {"missing", "folder", "missing/a.png"}) {
        EXPECT_EQ(read(name), Outcome::unreadable) << name;
    }
    EXPECT_EQ(reader.read("").outcome, Outcome::unreadable);
}

}  // namespace
