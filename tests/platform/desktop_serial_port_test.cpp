#include <QElapsedTimer>
#include <ctime>

#include "platform/desktop/serial_port.h"
#include "tests/support/temp_folder.h"
#include "tests/support_qt/modem.h"

namespace quillary::test {
namespace {

class SerialPortTest : public testing::Test {
 protected:
  // Whether it can be opened; either way the window must not stand still.
  static bool Open(SerialPort& port, const std::string& device) {
    port.SetDevice(QString::fromStdString(device));
    QElapsedTimer time;
    time.start();
    const bool isOpen = port.Open();
    EXPECT_LT(time.elapsed(), 100);
    return isOpen;
  }

  qint64 ClosingMs() {
    QElapsedTimer time;
    time.start();
    Port.Close();
    return time.elapsed();
  }

  TempFolder Folder;
  Modem Other;
  SerialPort Port;
};

TEST_F(SerialPortTest, CarriesEveryByteBothWays) {
  const std::string link = Folder.File("modem");
  ASSERT_EQ(symlink(Other.Device.c_str(), link.c_str()), 0);
  ASSERT_TRUE(Open(Port, link));
  QByteArray read;
  QObject::connect(&Port, &SerialPort::Received, [&] { read += Port.Read(); });
  Port.Write("AT\x03\x11\xFF\n\r");
  EXPECT_TRUE(Other.Hears("AT\x03\x11\xFF\n\r"));
  Other.Say("old");
  Port.DiscardInput();
  Other.Say("O\r\nK\x03");
  EXPECT_TRUE(QTest::qWaitFor([&] { return read.endsWith('\x03'); }));
  EXPECT_EQ(read, QByteArray("O\r\nK\x03"));

  // The last command is heard although the port is closed behind it.
  Port.Write("ATH\r");
  EXPECT_GT(ClosingMs(), 4 * 1000 / 960);  // at 9600 baud, before the speed is another one
  Port.Write("lost\r");
  EXPECT_TRUE(Other.Hears("ATH\r"));
  EXPECT_TRUE(Other.IsReleased());

  // However much there is to send, the window does not stand still.
  ASSERT_TRUE(Open(Port, link));
  Port.Write(QByteArray(1000, 'x'));
  EXPECT_LT(ClosingMs(), 100);
  ASSERT_TRUE(Open(Port, link));
  EXPECT_LT(ClosingMs(), 20);  // with nothing to wait for
}

TEST_F(SerialPortTest, OpensOnlyAFreePort) {
  for (const std::string& device :
       {std::string(), std::string("/dev/null"), Folder.Path(), Folder.File("nowhere")}) {
    EXPECT_FALSE(Open(Port, device)) << device;
  }
  SerialPort other;
  ASSERT_TRUE(Open(other, Other.Device));
  EXPECT_FALSE(Open(Port, Other.Device));
  other.Close();
  EXPECT_TRUE(Open(Port, Other.Device));
  EXPECT_EQ(HostPort(0) + HostPort(1000), QString());

  // One that vanishes, in the middle of a reply, costs nothing.
  Other.Say("half");
  Other.Vanish();
  QTest::qWait(50);
  const std::clock_t before = std::clock();
  QTest::qWait(300);
  EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 50);
  EXPECT_FALSE(Port.IsOpen());
  EXPECT_FALSE(Open(Port, Other.Device));
}

}  // namespace
}  // namespace quillary::test
