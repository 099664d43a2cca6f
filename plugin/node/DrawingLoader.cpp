#include "node/DrawingLoader.h"

#include "core/Frame.h"
#include "core/Layer.h"
#include "host/Logger.h"
#include "paint/DrawUtil.h"

#include <QBuffer>

#include <memory>
#include <new>
#include <utility>

namespace vellix {

namespace {

constexpr size_t THREADS = 2;
/// Enough to keep the threads busy while frames are made, and few enough that no more than a few copies of
/// stored text are alive at a time.
constexpr size_t MAX_PENDING = 4 * THREADS;

} // namespace

DrawingLoader::DrawingLoader(Report report)
    : report_(report) {}

DrawingLoader::~DrawingLoader() {
    Finish();
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        done_ = true;
    }
    wake_.notify_all();
    for (std::thread& thread : threads_) {
        thread.join();
    }
}

void DrawingLoader::AddHex(Layer& layer, int index, const MTime& time, MString hex) {
    Add(layer, index, time, [hex = std::move(hex)] {
        int length = 0;
        const char* text = hex.asUTF8(length);
        return QByteArray::fromHex(QByteArray::fromRawData(text, length));
    });
}

void DrawingLoader::AddBytes(Layer& layer, int index, const MTime& time, const QByteArray& png) {
    Add(layer, index, time, [png] { return png; });
}

void DrawingLoader::Finish() {
    while (!pending_.empty()) {
        TakeFirst();
    }
}

DrawingLoader::Checked DrawingLoader::Check(QByteArray png) {
    if (!QBuffer(&png).open(QIODevice::ReadOnly)) {
        return {Outcome::NotOpened, QByteArray()};
    }
    if (!DrawUtil::NormalisePngBuffer(png)) {
        return {Outcome::NotDecoded, QByteArray()};
    }
    return {Outcome::Loaded, png};
}

template <typename Decode>
void DrawingLoader::Add(Layer& layer, int index, const MTime& time, Decode decode) {
    StartThreads();
    if (pending_.size() >= MAX_PENDING) {
        TakeFirst();
    }
    std::packaged_task<Checked()> task([decode = std::move(decode)] {
        try {
            return Check(decode());
        } catch (const std::bad_alloc&) {
            return Checked{Outcome::NotDecoded, QByteArray()};
        }
    });
    pending_.push_back({&layer, index, time, task.get_future()});
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        queue_.push_back(std::move(task));
    }
    wake_.notify_one();
}

void DrawingLoader::StartThreads() {
    while (threads_.size() < THREADS) {
        threads_.emplace_back([this] { WorkOffQueue(); });
    }
}

void DrawingLoader::WorkOffQueue() {
    for (;;) {
        std::packaged_task<Checked()> task;
        {
            std::unique_lock<std::mutex> lock(mutex_);
            wake_.wait(lock, [this] { return done_ || !queue_.empty(); });
            if (queue_.empty()) {
                return;
            }
            task = std::move(queue_.front());
            queue_.pop_front();
        }
        task();
    }
}

void DrawingLoader::TakeFirst() {
    Pending drawing = std::move(pending_.front());
    pending_.pop_front();
    const Checked checked = drawing.checked.get();
    if (checked.outcome != Outcome::Loaded) {
        ReportBad(drawing, checked.outcome);
        return;
    }
    auto frame = std::make_unique<Frame>(drawing.time);
    frame->SetPackedImage(checked.png);
    drawing.layer->InsertFrame(frame.release());
}

void DrawingLoader::ReportBad(const Pending& drawing, Outcome outcome) const {
    if (report_ == Report::Nothing) {
        return;
    }
    const QString message = outcome == Outcome::NotOpened
                                ? QStringLiteral("Failed to open draw data buffer: %1 (%2)")
                                : QStringLiteral("Failed to load draw data: %1 (%2)");
    Logger::Error(message.arg(drawing.layer->GetName(), QString::number(drawing.index)));
}

} // namespace vellix
