#include "zlib/common/ZMessageBox.h"

#include <algorithm>
#include <cstdio>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace orvane
{

namespace
{

struct BoxState
{
    std::mutex mutex;
    ZMessageBox::Presenter presenter;
    std::vector<ZString> onShow;  // texts of the boxes that are open now
};

// Never destroyed: a failure may be reported until the very end of the process.
BoxState& state()
{
    static auto& instance = *new BoxState;
    return instance;
}

const char* kindName(ZMessageBox::Kind kind)
{
    switch (kind) {
    case ZMessageBox::kInformation:
    case ZMessageBox::kNotice:
        return "information";
    case ZMessageBox::kWarning:
        return "warning";
    default:
        return "error";
    }
}

void writeLine(ZMessageBox::Kind kind, const ZString& title, const ZString& text)
{
    std::string line = title.ToNarrow() + " (" + kindName(kind) + "): " + text.ToNarrow();
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    line += '\n';
    std::fputs(line.c_str(), stderr);
}

}  // namespace

void ZMessageBox::Show(Kind kind, const ZString& title, const ZString& text)
{
    BoxState& boxes = state();
    Presenter presenter;
    {
        const std::lock_guard lock(boxes.mutex);
        if (std::find(boxes.onShow.begin(), boxes.onShow.end(), text) != boxes.onShow.end())
            return;
        boxes.onShow.push_back(text);
        presenter = boxes.presenter;
    }
    if (presenter)
        presenter(kind, title, text);
    else
        writeLine(kind, title, text);
    const std::lock_guard lock(boxes.mutex);
    boxes.onShow.erase(std::find(boxes.onShow.begin(), boxes.onShow.end(), text));
}

ZMessageBox::Presenter ZMessageBox::SetPresenter(Presenter presenter)
{
    BoxState& boxes = state();
    const std::lock_guard lock(boxes.mutex);
    return std::exchange(boxes.presenter, std::move(presenter));
}

}  // namespace orvane
