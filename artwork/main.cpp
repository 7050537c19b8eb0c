#include "artwork/Pictures.h"
#include "artwork/Typeface.h"

#include <QtGui/QGuiApplication>
#include <filesystem>
#include <fstream>
#include <iostream>

// Draws all pictures of the tuner into a directory:  fretvane_artwork <directory>

namespace {

namespace fs = std::filesystem;

bool SaveText(const fs::path& file, const std::string& text) {
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream << text;
    stream.close();
    return stream.good();
}

bool SaveBitmaps(const fs::path& directory) {
    const GlyphStrip letters = DrawLetterStrip();
    const GlyphStrip digits = DrawDigitStrip();
    const Logo logo = DrawLogo();
    return letters.color.SaveBmp(directory / "NotesClr.bmp") &&
           letters.bevel.SaveBmp(directory / "NotesBev.bmp") &&
           digits.color.SaveBmp(directory / "NumClr.bmp") && digits.bevel.SaveBmp(directory / "NumBev.bmp") &&
           DrawDialScale().SaveBmp(directory / "Label.bmp") && DrawHub().SaveBmp(directory / "Circle.bmp") &&
           DrawCoarseBar().SaveBmp(directory / "gBar.bmp") &&
           DrawCoarseTick().SaveBmp(directory / "gTic.bmp") &&
           DrawString(StringKind::Disabled).SaveBmp(directory / "string1.bmp") &&
           DrawString(StringKind::Plain).SaveBmp(directory / "string2.bmp") &&
           DrawString(StringKind::Wound).SaveBmp(directory / "string3.bmp") &&
           logo.base.SaveBmp(directory / "FVLogo.bmp") && logo.opacity.SaveBmp(directory / "FVLogoOp.bmp");
}

bool SaveIcons(const fs::path& directory) {
    bool bSaved = SaveText(directory / "fretvane.svg", IconAsSvg());
    fs::create_directories(directory / "icons");
    for (const int nSide : {16, 24, 32, 48, 64, 128, 256}) {
        const fs::path file = directory / "icons" / ("fretvane-" + std::to_string(nSide) + ".png");
        bSaved = bSaved && DrawIcon(nSide).save(QString::fromStdString(file.string()), "PNG");
    }
    return bSaved;
}

}  // namespace

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    if (argc != 2) {
        std::cerr << "usage: fretvane_artwork <directory>\n";
        return 2;
    }
    if (!HasTypeface()) {
        std::cerr << "fretvane_artwork: the typeface Inter is missing: install fonts-inter\n";
        return 1;
    }
    std::error_code error;
    fs::create_directories(argv[1], error);
    if (error || !SaveBitmaps(argv[1]) || !SaveIcons(argv[1])) {
        std::cerr << "fretvane_artwork: can't write to " << argv[1] << '\n';
        return 1;
    }
    return 0;
}
