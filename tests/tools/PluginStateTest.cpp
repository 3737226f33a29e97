#include "tools/render/PluginState.h"
#include "support/ExpectZException.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace orvane
{

TEST(PluginStateTest, APresetBecomesTheOnlyProgramOfAChunk)
{
    const std::string preset = "<preset name=\"a\" version=\"1.0\">\n</preset>";
    EXPECT_EQ(programChunkOf(preset, "f"),
              "<VST_Program Number=\"0\">\n" + preset + "\n</VST_Program>\n");
    for (const auto& [text, says] :
         {std::pair("<other/>", "f is no preset: it has no element 'preset'"),
          std::pair("<preset version=\"2.0\"></preset>",
                    "f is a preset of version 2.0: 1.0 is needed"),
          std::pair("<preset></preset>", "f is a preset of version none: 1.0 is needed")})
        expectZException(-1, says, [text = text] { static_cast<void>(programChunkOf(text, "f")); });
}

}  // namespace orvane
