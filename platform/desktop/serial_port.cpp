#include "platform/desktop/serial_port.h"

#include <QCollator>
#include <QFileInfo>
#include <QSerialPortInfo>
#include <QThread>
#include <algorithm>

namespace quillary {
namespace {

constexpr qint64 kBytesPerSecond = 9600 / 10;  // a start bit, 8 data bits and a stop bit each
constexpr qint64 kDeviceMs = 20;               // for the way to the device, as through a converter
constexpr qint64 kLongestMs = 80;              // that closing may hold up the windows

}  // namespace

SerialPort::SerialPort() {
  // Queued: whoever reads may close the port, or keep the user waiting in a message box.
  connect(&port_, &QSerialPort::readyRead, this, &SerialPort::Received, Qt::QueuedConnection);
  // A device that is gone is ready to be read for ever.
  connect(
      &port_, &QSerialPort::errorOccurred, this,
      [this] {
        const QSerialPort::SerialPortError error = port_.error();
        const bool isGone = error == QSerialPort::ReadError || error == QSerialPort::ResourceError;
        if (isGone && port_.isOpen()) port_.close();
      },
      Qt::QueuedConnection);
}

bool SerialPort::Open() {
  if (device_.isEmpty()) return false;
  // Programs keep each other out by the device's own name.
  const QString path = QFileInfo(device_).canonicalFilePath();
  port_.setPortName(path.isEmpty() ? device_ : path);
  port_.setBaudRate(QSerialPort::Baud9600);
  port_.setParity(QSerialPort::NoParity);
  port_.setDataBits(QSerialPort::Data8);
  port_.setStopBits(QSerialPort::OneStop);
  port_.setFlowControl(QSerialPort::NoFlowControl);
  return port_.open(QIODevice::ReadWrite);
}

void SerialPort::Close() {
  if (!port_.isOpen()) return;
  port_.flush();
  // The device gets back its old speed, which holds at once, also for what it has not sent yet.
  QThread::msleep(static_cast<unsigned long>(std::min(sent_.remainingTime(), kLongestMs)));
  sent_ = QDeadlineTimer();
  port_.close();
}

void SerialPort::DiscardInput() {
  if (port_.isOpen()) port_.clear(QSerialPort::Input);
}

QByteArray SerialPort::Read() {
  return port_.isOpen() ? port_.readAll() : QByteArray();
}

void SerialPort::Write(const QByteArray& bytes) {
  if (!port_.isOpen()) return;
  port_.write(bytes);
  port_.flush();
  const qint64 ms = bytes.size() * 1000 / kBytesPerSecond + 1;
  sent_.setRemainingTime(std::max(sent_.remainingTime(), kDeviceMs) + ms, Qt::PreciseTimer);
}

QString HostPort(int n) {
  QList<QSerialPortInfo> ports = QSerialPortInfo::availablePorts();
  if (n < 1 || n > ports.size()) return {};
  QCollator byNumber;
  byNumber.setNumericMode(true);
  std::sort(ports.begin(), ports.end(),
            [&byNumber](const QSerialPortInfo& a, const QSerialPortInfo& b) {
              return byNumber.compare(a.portName(), b.portName()) < 0;
            });
  return ports.at(n - 1).systemLocation();
}

}  // namespace quillary
