#pragma once

namespace platform {

class Clock;
class MainQueue;
class TimerFactory;
class SavePanel;
class PictureEncoder;
class FileStore;
class VideoWriterFactory;
class Calendar;
class StandardFolders;

/// What the program asks of the machine it runs on. All of it outlives whoever is given this.
struct Services {
  Clock& clock;
  MainQueue& mainQueue;
  TimerFactory& timers;
  SavePanel& savePanel;
  PictureEncoder& pictureEncoder;
  FileStore& files;
  VideoWriterFactory& videoWriters;
  Calendar& calendar;
  StandardFolders& folders;
};

}  // namespace platform
