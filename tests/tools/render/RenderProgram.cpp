// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/RenderProgram.h"

#include "support/Test.h"
#include "tools/singer/Singer.h"

#include <cairo.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvane
{

void writeSound(const std::filesystem::path& path, const TestSound& sound)
{
    SF_INFO info{0, sound.rate, sound.channels, sound.format, 0, 0};
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    if (!file)
        throw std::runtime_error(sf_strerror(nullptr));
    sf_command(file, SFC_SET_CLIPPING, nullptr, SF_TRUE);
    sf_writef_float(file, sound.samples.data(), static_cast<sf_count_t>(sound.Frames()));
    sf_close(file);
}

TestSound readSound(const std::filesystem::path& path)
{
    SF_INFO info{};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    if (!file)
        throw std::runtime_error(sf_strerror(nullptr));
    TestSound sound{info.samplerate, info.channels, info.format, {}};
    sound.samples.resize(static_cast<std::size_t>(info.frames * info.channels));
    sf_readf_float(file, sound.samples.data(), info.frames);
    sf_close(file);
    return sound;
}

TestSound testVoice(int channels, double seconds, int rate)
{
    constexpr double kPitch = 223.845;  // A3 and 30 cents
    const std::vector<float> left = steadyVowel(Vowel::kA, kPitch, rate, seconds);
    const std::vector<float> right = steadyVowel(Vowel::kO, 2 * kPitch, rate, seconds);
    TestSound sound{.rate = rate, .channels = channels, .samples = {}};
    for (std::size_t i = 0; i < left.size(); ++i) {
        sound.samples.push_back(left[i]);
        if (channels == 2)
            sound.samples.push_back(0.25f * right[i]);
    }
    return sound;
}

std::vector<std::string> namesIn(const PrivateFolder& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path()))
        names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
}

RenderProgram::RenderProgram(const std::vector<std::string>& arguments, const std::string& program,
                             const std::string& input)
{
    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    const std::string paths[] = {input, mStreams.Path("out"), mStreams.Path("err")};
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        posix_spawn_file_actions_addopen(&actions, stream, paths[stream].c_str(),
                                         stream == STDIN_FILENO ? O_RDONLY : O_WRONLY | O_CREAT,
                                         0600);
    const int error = posix_spawn(&mProcess, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        throw std::runtime_error("the program does not start");
}

ProgramRun RenderProgram::Finish()
{
    int state = 0;
    waitpid(mProcess, &state, 0);
    ProgramRun run;
    if (WIFEXITED(state))
        run.status = WEXITSTATUS(state);
    if (WIFSIGNALED(state))
        run.signal = WTERMSIG(state);
    run.out = readTextFile(mStreams.Path("out"));
    run.err = readTextFile(mStreams.Path("err"));
    return run;
}

Picture readPicture(const std::string& path)
{
    cairo_surface_t* const surface = cairo_image_surface_create_from_png(path.c_str());
    EXPECT_EQ(cairo_surface_status(surface), CAIRO_STATUS_SUCCESS) << path;
    const auto* const data =
        reinterpret_cast<const std::uint32_t*>(cairo_image_surface_get_data(surface));
    const auto width = static_cast<std::size_t>(cairo_image_surface_get_stride(surface)) / 4;
    const auto height = static_cast<std::size_t>(cairo_image_surface_get_height(surface));
    Picture picture{{data, data + width * height}, width};
    cairo_surface_destroy(surface);
    return picture;
}

}  // namespace orvane
