// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What most tests need: the test framework and the standard library's common headers.

#include "support/Standard.h"

#include <gtest/gtest.h>
