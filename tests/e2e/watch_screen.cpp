// Watches a rectangle of the screen and prints the moment of every change: seconds since the epoch,
// a line each, until it is ended.
// usage: watch_screen X Y WIDTH HEIGHT

#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

int main(int argc, char** argv) {
  const QGuiApplication application(argc, argv);
  if (argc != 5) return 2;
  QScreen& screen = *QGuiApplication::primaryScreen();
  const auto look = [&] {
    return screen
        .grabWindow(0, std::atoi(argv[1]), std::atoi(argv[2]), std::atoi(argv[3]),
                    std::atoi(argv[4]))
        .toImage();
  };
  for (QImage last = look();;) {
    std::this_thread::sleep_for(std::chrono::milliseconds(4));
    QImage now = look();
    if (now == last) continue;
    const std::chrono::duration<double> time = std::chrono::system_clock::now().time_since_epoch();
    std::printf("%.3f\n", time.count());
    std::fflush(stdout);
    last = std::move(now);
  }
}
