// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/common/RunProgram.h"
#include "tools/pictures/MenuPicture.h"

#include <CLI/CLI.hpp>

#include <cstdint>
#include <string>

using namespace orvane;

int main(int argc, char** argv)
{
    MenuShot shot;
    bool isContext = false;
    std::string file;
    CLI::App app("Draws the plug-in's window with a menu open.", "kestrune-menu-picture");
    app.add_option("VIEW", shot.view, "The view's name in the description")->required();
    app.add_option("ITEM", shot.item, "The item under the pointer, counted from 0")->required();
    app.add_option("OUT", file, "PNG to write")->required();
    app.add_flag("--context", isContext, "Open the context menu instead of the view's own");
    app.add_option("--scale", shot.scale, "Pixels on the side of a unit")
        ->check(CLI::Range(0.5, 4.0));
    return runProgram("kestrune-menu-picture", app, argc, argv, [&] {
        shot.kind = isContext ? MenuShot::Kind::kContext : MenuShot::Kind::kOwn;
        writePicture(drawOpenMenu(shot), file, file);
    });
}
