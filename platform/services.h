#pragma once

namespace platform {

class Clock;
class MainQueue;
class TimerFactory;
class SavePanel;
class PictureEncoder;
class FileStore;

/// What the program asks of the machine it runs on. All of it outlives whoever is given this.
struct Services {
  Clock& clock;
  MainQueue& mainQueue;
  TimerFactory& timers;
  SavePanel& savePanel;
  PictureEncoder& pictureEncoder;
  FileStore& files;
};

}  // namespace platform
