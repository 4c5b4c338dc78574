#include <QElapsedTimer>

#include "platform/desktop/serial_port.h"
#include "tests/support/temp_folder.h"
#include "tests/support_qt/modem.h"

namespace quillary::test {
namespace {

// What it takes must not hold up the windows.
qint64 Ms(const std::function<void()>& action) {
  QElapsedTimer time;
  time.start();
  action();
  EXPECT_LT(time.elapsed(), 100);
  return time.elapsed();
}

bool Open(SerialPort& port, const std::string& device) {
  port.SetDevice(QString::fromStdString(device));
  bool isOpen = false;
  Ms([&] { isOpen = port.Open(); });
  return isOpen;
}

TEST(SerialPortTest, CarriesEveryByteBothWays) {
  const TempFolder folder;
  Modem modem;
  SerialPort port;
  const auto close = [&] { port.Close(); };
  const std::string link = folder.File("modem");
  ASSERT_EQ(symlink(modem.Device.c_str(), link.c_str()), 0);
  ASSERT_TRUE(Open(port, link));
  SerialPort second;
  EXPECT_FALSE(Open(second, modem.Device));  // in use, under whatever name
  QByteArray read;
  QObject::connect(&port, &SerialPort::Received, [&] { read += port.Read(); });
  port.Write("AT\x03\x11\xFF\n\r");
  EXPECT_TRUE(modem.Hears("AT\x03\x11\xFF\n\r"));
  modem.Say("old");
  port.DiscardInput();
  modem.Say("O\r\nK\x03");
  EXPECT_TRUE(QTest::qWaitFor([&] { return read.endsWith('\x03'); }));
  EXPECT_EQ(read, QByteArray("O\r\nK\x03"));

  // The last command is heard although the port is closed behind it.
  const auto hangUp = [&] {
    port.Write("ATH\r");
    port.Close();
  };
  EXPECT_GT(Ms(hangUp), 20);  // the time to the device, before the speed is another one
  port.Write("lost\r");
  EXPECT_TRUE(modem.Hears("ATH\r"));
  EXPECT_TRUE(modem.IsReleased());
  ASSERT_TRUE(Open(port, link));
  port.Write(QByteArray(1000, 'x'));
  Ms(close);
  ASSERT_TRUE(Open(port, link));
  EXPECT_LT(Ms(close), 20);  // with nothing to wait for
  EXPECT_EQ(HostPort(0) + HostPort(1000), QString());
}

}  // namespace
}  // namespace quillary::test
