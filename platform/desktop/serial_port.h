#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QObject>
#include <QSerialPort>
#include <QString>

namespace quillary {

// A serial port of the host at "9600,N,8,1": 9600 baud, no parity, 8 data bits, 1 stop bit, no flow
// control.
//
// Only Close waits for the device, for less than a tenth of a second. What fails, fails quietly: a
// port that is closed takes nothing and has received nothing, and one that vanishes is silent from
// then on, until it is closed.
class SerialPort : public QObject {
  Q_OBJECT

 public:
  SerialPort();

  // The port that the next Open means: a device of the host ("/dev/ttyS0", or a link to one); empty
  // for none.
  void SetDevice(const QString& device) { device_ = device; }

  // For this object alone. False where there is no such device, where it is no serial port, or
  // where somebody else has it open.
  bool Open();
  // What was written before still goes out, if that takes less than a tenth of a second. The line
  // to the modem drops.
  void Close();
  bool IsOpen() const { return port_.isOpen(); }

  void DiscardInput();
  // Everything that was received since the last call.
  QByteArray Read();
  void Write(const QByteArray& bytes);

 Q_SIGNALS:
  // Something can be read. Comes when events run, and never out of a call of the above.
  void Received();

 private:
  QString device_;
  QSerialPort port_;
  QDeadlineTimer sent_;  // when all that was written is out
};

// The device of the host's n-th serial port, from 1 on, in the order of their names; empty where
// there are fewer.
QString HostPort(int n);

}  // namespace quillary
