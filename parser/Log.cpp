#include "Log.h"

#include <SQLAntlrParser/SQLLog.h>

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <memory>
#include <mutex>
#include <vector>

namespace {

// Guards currentSink; never held while a sink runs, so that a sink may log
// or install another sink (or none).
std::mutex sinkMutex;
std::shared_ptr<SQLAntlrParser::LogSink> currentSink;
// Delivers messages one at a time across threads; recursive, so that a sink
// whose work logs on the same thread gets that message too.
std::recursive_mutex deliveryMutex;
std::atomic<bool> sinkInstalled{false};

} // namespace

namespace SQLAntlrParser {

void setLogSink(LogSink sink)
{
    std::lock_guard<std::mutex> lock(sinkMutex);
    if (sink) {
        currentSink = std::make_shared<LogSink>(std::move(sink));
    } else {
        currentSink.reset();
    }
    sinkInstalled.store(currentSink != nullptr, std::memory_order_release);
}

bool isLogging()
{
    return sinkInstalled.load(std::memory_order_acquire);
}

} // namespace SQLAntlrParser

namespace sqlantlr {

bool logEnabled()
{
    return SQLAntlrParser::isLogging();
}

void logMessage(const std::string &message)
{
    if (!logEnabled()) {
        return;
    }
    std::shared_ptr<SQLAntlrParser::LogSink> sink;
    {
        std::lock_guard<std::mutex> lock(sinkMutex);
        sink = currentSink;  // keeps the sink alive even if it is replaced meanwhile
    }
    if (sink) {
        std::lock_guard<std::recursive_mutex> delivering(deliveryMutex);
        (*sink)(message);
    }
}

void logf(const char *format, ...)
{
    if (!logEnabled()) {
        return;
    }
    va_list args;
    va_start(args, format);
    va_list copy;
    va_copy(copy, args);
    const int length = std::vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    if (length >= 0) {
        std::vector<char> buffer(static_cast<size_t>(length) + 1);
        std::vsnprintf(buffer.data(), buffer.size(), format, args);
        std::string message(buffer.data(), static_cast<size_t>(length));
        while (!message.empty() && message.back() == '\n') {
            message.pop_back();
        }
        logMessage(message);
    }
    va_end(args);
}

} // namespace sqlantlr
