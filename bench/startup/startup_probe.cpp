// Starts a program and reports, on one line, the milliseconds from its
// start to the first map of a normal (not override-redirect) top-level
// window on the X server, and its resident memory in MiB a given time after
// that map. The program is then terminated.
//
// With --until-pixel X,Y,RRGGBB it also reports when the pixel at X,Y of
// that window first shows the color (within 8 per channel): the moment a
// known piece of content is on screen.
//
// Usage: bench_startup_probe [--until-pixel X,Y,RRGGBB] <settle ms> <program> [arguments...]
// Output: "map_ms=<ms> rss_mib=<MiB>" [" content_ms=<ms>"]; exit status 1
// when nothing mapped within 10 s.
#include <xcb/xcb.h>

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

double residentMiB(pid_t pid)
{
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind("VmRSS:", 0) == 0)
            return std::strtod(line.c_str() + 6, nullptr) / 1024.0;
    return -1;
}

} // namespace

int main(int argc, char *argv[])
{
    int first = 1;
    bool waitForPixel = false;
    int pixelX = 0, pixelY = 0;
    unsigned pixelColor = 0;
    if (argc > 2 && std::strcmp(argv[1], "--until-pixel") == 0) {
        waitForPixel = std::sscanf(argv[2], "%d,%d,%x", &pixelX, &pixelY, &pixelColor) == 3;
        first = 3;
    }
    if (argc < first + 2) {
        std::fprintf(stderr, "usage: %s [--until-pixel X,Y,RRGGBB] <settle ms> <program> [arguments...]\n",
                     argv[0]);
        return 2;
    }
    const int settleMs = std::atoi(argv[first]);
    char **program = argv + first + 1;

    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection)) {
        std::fprintf(stderr, "cannot connect to the X server\n");
        return 2;
    }
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_void_cookie_t cookie =
        xcb_change_window_attributes_checked(connection, screen->root, XCB_CW_EVENT_MASK, &mask);
    if (xcb_generic_error_t *error = xcb_request_check(connection, cookie)) {
        std::fprintf(stderr, "cannot watch the root window (error %d)\n", error->error_code);
        return 2;
    }
    xcb_flush(connection);

    const Clock::time_point start = Clock::now();
    const pid_t child = fork();
    if (child == 0) {
        execvp(program[0], program);
        std::perror("exec");
        _exit(127);
    }

    double mapMs = -1;
    xcb_window_t mapped = 0;
    pollfd fd{xcb_get_file_descriptor(connection), POLLIN, 0};
    while (mapMs < 0) {
        const auto elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
        if (elapsed.count() > 10000)
            break;
        while (xcb_generic_event_t *event = xcb_poll_for_event(connection)) {
            if ((event->response_type & ~0x80) == XCB_MAP_NOTIFY) {
                auto *map = reinterpret_cast<xcb_map_notify_event_t *>(event);
                if (!map->override_redirect && mapMs < 0) {
                    mapMs = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
                    mapped = map->window;
                }
            }
            std::free(event);
        }
        if (mapMs < 0)
            poll(&fd, 1, 5);
    }

    double contentMs = -1;
    if (mapMs >= 0 && waitForPixel) {
        auto near = [](unsigned a, unsigned b) { return (a > b ? a - b : b - a) <= 8; };
        while (contentMs < 0 && Clock::now() - start < std::chrono::seconds(10)) {
            auto cookie = xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, mapped, int16_t(pixelX),
                                        int16_t(pixelY), 1, 1, ~0u);
            if (xcb_get_image_reply_t *reply = xcb_get_image_reply(connection, cookie, nullptr)) {
                const uint8_t *data = xcb_get_image_data(reply);
                if (xcb_get_image_data_length(reply) >= 3) {
                    // 24-bit depth: blue, green, red in memory order.
                    if (near(data[2], (pixelColor >> 16) & 0xff) && near(data[1], (pixelColor >> 8) & 0xff)
                        && near(data[0], pixelColor & 0xff))
                        contentMs = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
                }
                std::free(reply);
            }
            if (contentMs < 0)
                std::this_thread::sleep_for(std::chrono::microseconds(500));
        }
    }

    double rss = -1;
    if (mapMs >= 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(settleMs));
        rss = residentMiB(child);
    }
    kill(child, SIGTERM);
    int status = 0;
    waitpid(child, &status, 0);
    xcb_disconnect(connection);
    if (mapMs < 0) {
        std::fprintf(stderr, "no window was mapped within 10 s\n");
        return 1;
    }
    if (waitForPixel)
        std::printf("map_ms=%.1f rss_mib=%.1f content_ms=%.1f\n", mapMs, rss, contentMs);
    else
        std::printf("map_ms=%.1f rss_mib=%.1f\n", mapMs, rss);
    return 0;
}
