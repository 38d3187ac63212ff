// The entry of the module.
#include <dlfcn.h>

#include <QApplication>
#include <clocale>
#include <cstdlib>

#include "windows/session.h"

namespace {

/// Whether windows can be shown on the display that the environment names. The toolkit itself would end the program.
bool has_display()
{
    const char* wayland = std::getenv("WAYLAND_DISPLAY");
    const char* display = std::getenv("DISPLAY");
    if (display == nullptr || *display == 0) return wayland != nullptr && *wayland != 0;
    void* library = dlopen("libxcb.so.1", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) return false;
    const auto connect = reinterpret_cast<void* (*)(const char*, int*)>(dlsym(library, "xcb_connect"));
    const auto error = reinterpret_cast<int (*)(void*)>(dlsym(library, "xcb_connection_has_error"));
    const auto disconnect = reinterpret_cast<void (*)(void*)>(dlsym(library, "xcb_disconnect"));
    if (connect == nullptr || error == nullptr || disconnect == nullptr) return false;
    void* connection = connect(nullptr, nullptr);
    const bool works = error(connection) == 0;
    disconnect(connection);
    return works;
}

void start_toolkit()
{
    static int count = 1;
    static char name[] = "velora-report";
    static char* arguments[] = {name, nullptr};
    const std::string locale = std::setlocale(LC_ALL, nullptr);
    // What the toolkit finds odd about the machine is no affair of the person's.
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
        if (type == QtCriticalMsg || type == QtFatalMsg) std::fprintf(stderr, "%s\n", qPrintable(text));
    });
    new QApplication(count, arguments);  // lives as long as the process
    QApplication::setQuitOnLastWindowClosed(false);
    std::setlocale(LC_ALL, locale.c_str());  // the toolkit changes it, and numbers in files are written without one
}

}  // namespace

extern "C" velora::forms::Toolkit* velora_make_toolkit(velora::forms::Desk& desk,
                                                       const velora::forms::ToolkitOptions& options, std::string& why)
{
    if (QApplication::instance() == nullptr) {
        const char* platform = std::getenv("QT_QPA_PLATFORM");
        const bool is_named = platform != nullptr && *platform != 0;
        if (!is_named && !has_display()) {
            if (!options.is_scripted) {
                why = "There is no display to show windows on.";
                return nullptr;
            }
            qputenv("QT_QPA_PLATFORM", "offscreen");
        }
        start_toolkit();
    }
    return new velora::windows::Session(desk, options);
}
