// Draws nftest.bmp, the monochrome picture that the full non-fiscal ticket loads as bitmap 1:
// a frame round the words "NF TEST" in block letters. Usage: make_nftest_bmp OUTPUT
#include <QImage>

#include <array>
#include <cstdio>

namespace {

constexpr int Scale = 4;  // dots per cell of a letter
constexpr int Margin = 8; // dots between the frame and the letters

// Letters of five by seven cells, one text row per cell row.
using Glyph = std::array<const char*, 7>;
constexpr Glyph N{"#...#", "##..#", "#.#.#", "#.#.#", "#..##", "#...#", "#...#"};
constexpr Glyph F{"#####", "#....", "#....", "####.", "#....", "#....", "#...."};
constexpr Glyph T{"#####", "..#..", "..#..", "..#..", "..#..", "..#..", "..#.."};
constexpr Glyph E{"#####", "#....", "#....", "####.", "#....", "#....", "#####"};
constexpr Glyph S{".####", "#....", "#....", ".###.", "....#", "....#", "####."};
constexpr Glyph Space{".....", ".....", ".....", ".....", ".....", ".....", "....."};

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_nftest_bmp OUTPUT\n");
        return 2;
    }
    const std::array<const Glyph*, 7> word{&N, &F, &Space, &T, &E, &S, &T};
    const int cell = 6 * Scale; // a letter and the gap behind it
    const int width = 2 * Margin + int(word.size()) * cell - Scale;
    const int height = 2 * Margin + 7 * Scale;

    QImage image(width, height, QImage::Format_Mono);
    image.setColorTable({qRgb(255, 255, 255), qRgb(0, 0, 0)});
    image.fill(0);
    for (int x = 0; x < width; ++x) {
        image.setPixel(x, 0, 1);
        image.setPixel(x, height - 1, 1);
    }
    for (int y = 0; y < height; ++y) {
        image.setPixel(0, y, 1);
        image.setPixel(width - 1, y, 1);
    }
    for (int letter = 0; letter < int(word.size()); ++letter)
        for (int row = 0; row < 7; ++row)
            for (int col = 0; col < 5; ++col)
                if ((*word[letter])[row][col] == '#')
                    for (int dy = 0; dy < Scale; ++dy)
                        for (int dx = 0; dx < Scale; ++dx)
                            image.setPixel(Margin + letter * cell + col * Scale + dx,
                                           Margin + row * Scale + dy, 1);

    if (!image.save(QString::fromLocal8Bit(argv[1]), "BMP")) {
        std::fprintf(stderr, "make_nftest_bmp: cannot write %s\n", argv[1]);
        return 1;
    }
    return 0;
}
