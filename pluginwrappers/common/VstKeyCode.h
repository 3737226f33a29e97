#pragma once

#include <cstdint>

namespace orvane
{

/// A key as the host hands it to the editor.
struct VstKeyCode
{
    std::int32_t character;  // 0 where the key has none
    std::uint8_t virt;       // the interface's own virtual key, 0 for none
    std::uint8_t modifier;   // bits: 1 shift, 2 alternate, 4 command, 8 control
};

}  // namespace orvane
