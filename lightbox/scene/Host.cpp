#include "scene/Host.h"

#include "scene/UserInterface.h"

#include <stdexcept>

namespace lightbox {

namespace {

Host* g_host = nullptr;

} // namespace

Host::Host(const Options& options)
    : options_(options) {
    if (g_host) {
        throw std::logic_error("A host is running already.");
    }
    g_host = this;
}

Host::~Host() = default;

void Host::Retire() {
    g_host = nullptr;
}

Host& Host::Get() {
    if (!g_host) {
        throw std::logic_error("No host is running.");
    }
    return *g_host;
}

Host* Host::Current() {
    return g_host;
}

void Host::SetUserInterface(std::unique_ptr<UserInterface> ui) {
    ui_ = std::move(ui);
}

} // namespace lightbox
