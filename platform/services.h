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
class HandPoseRequest;
class SerialQueueFactory;
class CaptureService;
class CameraPermission;
class SettingsPage;
class Activation;

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
  HandPoseRequest& handPoseRequest;
  SerialQueueFactory& queues;
  CaptureService& captureService;
  CameraPermission& cameraPermission;
  SettingsPage& settingsPage;
  Activation& activation;
};

}  // namespace platform
