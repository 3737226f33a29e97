// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/common/RunProgram.h"
#include "tools/pictures/MenuPicture.h"

#include <CLI/CLI.hpp>

#include <cstdint>
#include <string>

using namespace orvane;

int main(int argc, char** argv)
{
    std::string view;
    std::int32_t item = 0;
    std::string file;
    CLI::App app("Draws the plug-in's window with a menu open.", "kestrune-menu-picture");
    app.add_option("VIEW", view, "The menu's name in the description")->required();
    app.add_option("ITEM", item, "The item under the pointer, counted from 0")->required();
    app.add_option("OUT", file, "PNG to write")->required();
    return runProgram("kestrune-menu-picture", app, argc, argv,
                      [&] { writePicture(drawOpenMenu(view, item), file, file); });
}
