#include "tools/resources/WindowMock.h"

#include "tools/resources/ArtworkPaint.h"
#include "tools/resources/KeyArtwork.h"
#include "tools/resources/PixelFont.h"

#include <array>
#include <cmath>
#include <stdexcept>
#include <string_view>

namespace orvane
{

namespace
{

constexpr int kWindowWidth = 454;
constexpr int kWindowHeight = 430;
constexpr double kBackgroundOffset = -2.0;
constexpr Ink kLabelInk{0xB6B6B6};

enum class Align
{
    kLeft,
    kCentre,
    kRight
};

double leftOfText(const Box& box, double width, Align align)
{
    switch (align) {
    case Align::kCentre:
        return box.left + std::floor((box.width - width) / 2.0);
    case Align::kRight:
        return box.right() - width;
    case Align::kLeft:
        break;
    }
    return box.left;
}

/// The window's canvas: coordinates are those of the background picture.
class MockCanvas
{
public:
    MockCanvas(std::filesystem::path images, const PixelFont& font);

    cairo_t* context() { return mContext.get(); }
    ArtworkSurface takeSurface() { return std::move(mSurface); }

    void drawPicture(const std::string& name, double left, double top);
    /// A label in the pixel font, a line for each word when it is too wide for its box.
    void drawLabel(std::string_view text, const Box& box, Align align = Align::kLeft,
                   const Ink& ink = kLabelInk);
    /// A value or a key's name in Arial, a line for each word when it is too wide for its box.
    void drawText(const std::string& text, const Box& box, Align align, const Ink& ink);

private:
    std::filesystem::path mImages;
    const PixelFont& mFont;
    ArtworkSurface mSurface;
    ArtworkContext mContext;
};

MockCanvas::MockCanvas(std::filesystem::path images, const PixelFont& font)
    : mImages(std::move(images))
    , mFont(font)
    , mSurface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, kWindowWidth, kWindowHeight))
    , mContext(cairo_create(mSurface.get()))
{
    cairo_translate(mContext.get(), kBackgroundOffset, kBackgroundOffset);
    cairo_select_font_face(mContext.get(), "Arial", CAIRO_FONT_SLANT_NORMAL,
                           CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(mContext.get(), 11.0);
}

void MockCanvas::drawPicture(const std::string& name, double left, double top)
{
    const std::filesystem::path file = mImages / name;
    const ArtworkSurface picture(cairo_image_surface_create_from_png(file.c_str()));
    if (cairo_surface_status(picture.get()) != CAIRO_STATUS_SUCCESS)
        throw std::runtime_error("cannot read " + file.string());
    cairo_set_source_surface(context(), picture.get(), left, top);
    cairo_paint(context());
}

void MockCanvas::drawLabel(std::string_view text, const Box& box, Align align, const Ink& ink)
{
    const double width = mFont.textWidth(text);
    const std::size_t blank = text.find(' ');
    if (width > box.width && blank != std::string_view::npos) {
        drawLabel(text.substr(0, blank), box, align, ink);
        drawLabel(text.substr(blank + 1), box.moved(0.0, PixelFont::kRows), align, ink);
        return;
    }
    drawPixelText(context(), mFont, text, static_cast<int>(leftOfText(box, width, align)),
                  static_cast<int>(box.top), ink);
}

void MockCanvas::drawText(const std::string& text, const Box& box, Align align, const Ink& ink)
{
    cairo_text_extents_t size;
    cairo_font_extents_t line;
    cairo_text_extents(context(), text.c_str(), &size);
    cairo_font_extents(context(), &line);
    const std::size_t blank = text.find(' ');
    if (size.x_advance > box.width && blank != std::string::npos) {
        drawText(text.substr(0, blank), box, align, ink);
        drawText(text.substr(blank + 1), box.moved(0.0, line.height), align, ink);
        return;
    }
    cairo_move_to(context(), leftOfText(box, size.x_advance, align), box.top + line.ascent);
    cairo_text_path(context(), text.c_str());
    fill(context(), ink);
}

void drawHorizontal(cairo_t* context, double left, double right, double top, const Ink& ink)
{
    fillBox(context, {left, top, right - left, 1.0}, ink);
}

void drawHeader(MockCanvas& canvas)
{
    cairo_t* const context = canvas.context();
    canvas.drawPicture("RedGradientBlackTop.png", 0.0, 0.0);
    fillBox(context, {0.0, 31.0, 454.0, 2.0}, {0x000000});
    drawHorizontal(context, 0.0, 454.0, 34.0, {0x161616});

    constexpr std::array<std::array<double, 2>, 10> kBand{{{0, 35},
                                                           {454, 35},
                                                           {447, 38},
                                                           {444, 39},
                                                           {440, 40},
                                                           {432, 41},
                                                           {22, 41},
                                                           {14, 40},
                                                           {10, 39},
                                                           {7, 38}}};
    cairo_set_antialias(context, CAIRO_ANTIALIAS_NONE);
    for (const auto& [x, y] : kBand)
        cairo_line_to(context, x, y);
    cairo_close_path(context);
    fillAcross(context, {{0.0, {0x585858}}, {227.0, {0xA2A2A2}}, {454.0, {0x494949}}});
    cairo_set_antialias(context, CAIRO_ANTIALIAS_DEFAULT);

    canvas.drawPicture("KestruneMiniLogo.png", 10.0, 5.0);
    canvas.drawPicture("OrvaneLogoPluginHeader.png", 414.0, 3.0);
}

void drawMenu(MockCanvas& canvas, const Box& box, const std::string& text)
{
    constexpr std::array<unsigned, 18> kFace{251, 249, 246, 245, 245, 245, 245, 245, 233,
                                             233, 233, 233, 233, 234, 236, 239, 244, 134};
    constexpr std::array<unsigned, 18> kCap{227, 209, 206, 201, 199, 194, 191, 186, 169,
                                            154, 148, 142, 137, 132, 127, 124, 146, 137};
    constexpr double kCapWidth = 17.0;
    cairo_t* const context = canvas.context();
    const auto grey = [](unsigned level) { return Ink{level * 0x010101}; };
    {
        const ArtworkScope scope(context);
        addRoundedBox(context, box, 6.0);
        cairo_clip(context);
        fillBox(context, box, {0x64B4E9});
        for (std::size_t row = 0; row < kFace.size(); ++row) {
            const double top = box.top + 1.0 + static_cast<double>(row);
            drawHorizontal(context, box.left, box.right(), top, grey(kFace[row]));
            drawHorizontal(context, box.right() - kCapWidth, box.right(), top, grey(kCap[row]));
        }
    }
    for (const double turn : {1.0, -1.0}) {
        const ArtworkScope scope(context);
        cairo_translate(context, box.right() - 13.0, box.top + (turn > 0.0 ? 4.0 : 15.0));
        cairo_scale(context, 0.5, 0.5 * turn);
        cairo_move_to(context, 12.0, 8.0);
        cairo_line_to(context, 0.0, 8.0);
        cairo_line_to(context, 6.0, 0.0);
        fill(context, {0x000000});
    }
    addRoundedBox(context, box, 6.0);
    stroke(context, {0x000000, 0.5}, 2.0);
    canvas.drawText(text, {box.left + 6.0, box.top + 4.0, box.width - 18.0, 13.0}, Align::kLeft,
                    {0x000000});
}

/// A group's frame is engraved: a dark line above and to the left, a light one beside it.
void drawGroup(MockCanvas& canvas, const Box& box)
{
    constexpr double kRadius = 5.0;
    cairo_t* const context = canvas.context();
    outlineRoundedBox(context, {box.left + 1.0, box.top + 1.0, box.width - 1.0, box.height},
                      kRadius, {0xFFFFFF, 0.19});
    fillBox(context, {box.left + kRadius, box.bottom(), box.width - 2 * kRadius, 1.0},
            {0xFFFFFF, 0.35});
    fillBox(context, {box.left, box.top + kRadius, 1.0, box.height - 2 * kRadius},
            {0x000000, 0.25});
    fillBox(context, {box.left + kRadius, box.top, box.width - 2 * kRadius, 1.0}, {0x000000, 0.25});
}

void drawCheckBox(MockCanvas& canvas, double left, double top, std::string_view title)
{
    canvas.drawPicture("GreenCheckBoxOn.png", left, top);
    canvas.drawLabel(title, {left + 16.0, top + 3.0, 100.0, 10.0});
}

void drawTransposeGroup(MockCanvas& canvas)
{
    const Box group{11.0, 88.0, 387.0, 58.0};
    drawGroup(canvas, group);
    drawCheckBox(canvas, group.left + 6.0, group.top + 5.0, "TRANSPOSE");
    canvas.drawLabel("PITCH", {group.left + 8.0, group.top + 32.0, 30.0, 10.0});
    drawMenu(canvas, {group.left + 40.0, group.top + 26.0, 110.0, 20.0}, "No change");
    canvas.drawLabel("SIZE", {group.left + 161.0, group.top + 32.0, 25.0, 10.0});
    drawMenu(canvas, {group.left + 188.0, group.top + 26.0, 100.0, 20.0}, "Normal");
}

void drawSlider(MockCanvas& canvas, const Box& box)
{
    cairo_t* const context = canvas.context();
    fillBox(context, {box.left + 15.0, box.top + 8.0, box.width - 29.0, 2.0}, kLabelInk);
    fillBox(context, {box.left + 15.0, box.top + 7.0, box.width - 30.0, 2.0}, {0x000000});
    canvas.drawPicture("MetalHorizSliderThumb.png", box.left + 24.0, box.top);
}

enum class Shape
{
    kCutRight,
    kCutBoth,
    kCutLeft,
    kBlack
};

struct MockKey
{
    Shape shape;
    double left;
    const char* name;
    KeyState state;
};

/// C major, with a C# in it, D under the mouse and F# sounding.
constexpr std::array<MockKey, 13> kKeys{{
    {Shape::kCutRight, 0, "C", KeyState::kScale},
    {Shape::kCutBoth, 41, "D", KeyState::kDown},
    {Shape::kCutLeft, 82, "E", KeyState::kScale},
    {Shape::kCutRight, 123, "F", KeyState::kScale},
    {Shape::kCutBoth, 164, "G", KeyState::kScale},
    {Shape::kCutBoth, 205, "A", KeyState::kRest},
    {Shape::kCutLeft, 246, "B", KeyState::kScale},
    {Shape::kCutRight, 287, "C", KeyState::kScale},
    {Shape::kBlack, 29, "C# Db", KeyState::kScale},
    {Shape::kBlack, 70, "D# Eb", KeyState::kRest},
    {Shape::kBlack, 152, "F# Gb", KeyState::kDown},
    {Shape::kBlack, 193, "G# Ab", KeyState::kRest},
    {Shape::kBlack, 234, "A# Bb", KeyState::kRest},
}};

std::string pictureOf(const MockKey& key)
{
    const std::string number = std::to_string(static_cast<int>(key.shape) + 1);
    switch (key.state) {
    case KeyState::kScale:
        return "nkl" + number + "_RedDot.png";
    case KeyState::kDown:
        return "nkd" + number + ".png";
    case KeyState::kRest:
        break;
    }
    return "nk" + number + ".png";
}

Box nameBoxOf(const MockKey& key)
{
    const double half = kBlackKeyWidth / 2;
    const bool isCutLeft = key.shape == Shape::kCutBoth || key.shape == Shape::kCutLeft;
    const double right = key.shape == Shape::kBlack     ? kBlackKeyWidth
                         : key.shape == Shape::kCutLeft ? kWhiteKeyWidth
                                                        : kWhiteKeyWidth - half;
    const double left = isCutLeft ? half : 0.0;
    return {key.left + left, 10.0, right - left, 80.0};
}

void drawKeyboard(MockCanvas& canvas, const Box& box)
{
    const ArtworkScope scope(canvas.context());
    addBox(canvas.context(), box);
    cairo_clip(canvas.context());
    for (const MockKey& key : kKeys) {
        canvas.drawPicture(pictureOf(key), box.left + key.left, box.top);
        const bool isLight = key.shape != Shape::kBlack || key.state == KeyState::kDown;
        canvas.drawText(key.name, nameBoxOf(key).moved(box.left, box.top), Align::kCentre,
                        {isLight ? 0x000000u : 0xFFFFFFu});
    }
}

void drawIgnoreBoxes(MockCanvas& canvas, const Box& box)
{
    constexpr double kBoxWidth = 14.0;
    for (const MockKey& key : kKeys) {
        const Box name = nameBoxOf(key);
        const double left = box.left + static_cast<int>(name.left + (name.width - kBoxWidth) / 2.0);
        const bool isOn = key.state == KeyState::kRest;
        if (left + kBoxWidth > box.right())
            continue;
        canvas.drawPicture(isOn ? "GreenCheckBoxOn.png" : "GreenCheckBoxOff.png", left, box.top);
        const double middle = left + kBoxWidth / 2.0;
        fillBox(canvas.context(), {middle - 1.0, box.top + kBoxWidth, 1.0, 7.0}, {0x000000, 0.2});
        fillBox(canvas.context(), {middle, box.top + kBoxWidth, 1.0, 7.0}, {0xFFFFFF, 0.47});
    }
}

void drawCorrectionGroup(MockCanvas& canvas)
{
    const Box group{11.0, 154.0, 387.0, 262.0};
    const auto at = [&](double left, double top, double width, double height) {
        return Box{group.left + left, group.top + top, width, height};
    };
    drawGroup(canvas, group);
    drawCheckBox(canvas, group.left + 6.0, group.top + 5.0, "CORRECT PITCH");
    canvas.drawLabel("SCALE", at(153, 47, 46, 10));
    drawMenu(canvas, at(188, 40, 100, 20), "Major");
    canvas.drawLabel("KEY", at(297, 47, 46, 10));
    drawMenu(canvas, at(320, 40, 47, 20), "C");
    canvas.drawLabel("PITCH CORRECTION", at(15, 33, 94, 10), Align::kCentre);
    drawSlider(canvas, at(6, 42, 110, 20));
    canvas.drawLabel("MORE", at(6, 62, 27, 10));
    canvas.drawLabel("LESS", at(93, 62, 27, 10));
    canvas.drawLabel("IGNORE:", at(3, 90, 75, 10), Align::kRight);
    drawIgnoreBoxes(canvas, at(87, 85, 296, 21));
    canvas.drawLabel("CUSTOM SCALE", at(8, 135, 75, 10));
    canvas.drawPicture("MIDI_Input72_On.png", group.left + 7.0, group.top + 151.0);
    canvas.drawPicture("Reset72_Over.png", group.left + 7.0, group.top + 172.0);
    canvas.drawPicture("Add_Scale72_Off.png", group.left + 7.0, group.top + 193.0);
    drawKeyboard(canvas, at(87, 106, 296, 147));
}

void drawMeter(MockCanvas& canvas)
{
    constexpr double kLeft = 400.0;
    constexpr double kTop = 120.0;
    constexpr Ink kLight{0xE1E1E1};
    constexpr Ink kDark{0x585858};
    cairo_t* const context = canvas.context();
    canvas.drawLabel("TUNING METER", {kLeft + 6.0, 96.0, 36.0, 20.0});
    fillBox(context, {kLeft + 30.0, kTop, 10.0, 270.0}, {0x333333});
    fillBox(context, {kLeft + 31.0, kTop + 95.0, 8.0, 40.0}, {0xFFCC66});
    struct Mark
    {
        const char* text;
        double light;
        double textTop;
    };
    for (const Mark& mark : {Mark{"200", 1, 0}, Mark{"0", 135, 131}, Mark{"-200", 269, 261}}) {
        drawHorizontal(context, kLeft + 25.0, kLeft + 29.0, kTop + mark.light, kLight);
        drawHorizontal(context, kLeft + 25.0, kLeft + 29.0, kTop + mark.light + 1.0, kDark);
        canvas.drawLabel(mark.text, {kLeft, kTop + mark.textTop, 24.0, 10.0}, Align::kRight,
                         {0xD4D4D4});
    }
}

ArtworkSurface enlarge(ArtworkSurface picture, int scale)
{
    ArtworkSurface large(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, kWindowWidth * scale,
                                                    kWindowHeight * scale));
    const ArtworkContext context(cairo_create(large.get()));
    cairo_scale(context.get(), scale, scale);
    cairo_set_source_surface(context.get(), picture.get(), 0.0, 0.0);
    cairo_pattern_set_filter(cairo_get_source(context.get()), CAIRO_FILTER_NEAREST);
    cairo_paint(context.get());
    return large;
}

}  // namespace

ArtworkSurface paintWindowMock(const std::filesystem::path& images, const PixelFont& font,
                               int scale)
{
    MockCanvas canvas(images, font);
    drawHeader(canvas);
    canvas.drawLabel("PITCH RANGE:", {14.0, 47.0, 96.0, 10.0});
    drawMenu(canvas, {12.0, 57.0, 170.0, 20.0}, "Alto/Tenor vocals");
    drawTransposeGroup(canvas);
    drawCorrectionGroup(canvas);
    drawMeter(canvas);
    return enlarge(canvas.takeSurface(), scale);
}

}  // namespace orvane
