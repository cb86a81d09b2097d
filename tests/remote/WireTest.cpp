#include <gmock/gmock.h>

#include <array>
#include <atomic>
#include <functional>
#include <future>
#include <thread>

#include "QuillonRemoting/Channels.h"
#include "QuillonRemoting/Messages.h"
#include "remote/ScriptedServer.h"

namespace {

using namespace std::chrono_literals;
using TQueue = TQuillonRemoteParamsQueue;

/// Longer than anything here takes, unless it hangs.
constexpr std::int32_t Long = 20'000;

std::string Written(const TQuillonPersistent& AnObject) {
  TQuillonMemoryStream Stream;
  TQuillonStreamWriter(Stream).WriteObjectProperties(&AnObject);
  return Stream.TakeContent();
}

void ReadInto(TQuillonPersistent& AnObject, std::string ABytes) {
  TQuillonMemoryStream Stream(std::move(ABytes));
  AnObject.LoadFromStream(Stream);
  EXPECT_EQ(Stream.Position(), Stream.Size());
}

struct TCase {
  std::string_view Digits;
  std::function<void(TQueue&)> Push;
  std::function<bool(TQueue&)> Pop;
};

template <class TValue>
TCase Case(std::string_view ADigits, void (TQueue::*APush)(TValue), TValue (TQueue::*APop)(), const TValue& AValue) {
  return {ADigits, [=](TQueue& A) { (A.*APush)(AValue); }, [=](TQueue& A) { return (A.*APop)() == AValue; }};
}

TEST(WireTest, EachValueHasItsBytes) {
  QuillonValues::RegisterClasses();
  const std::vector<std::string> Lines = {"a", "", "b"};
  const TGUID Guid = QuillonGuid::Parse("{00112233-4455-6677-8899-AABBCCDDEEFF}");
  const std::array Cases = {
      TCase{"00 01000000 0C000000 5400 5100 7500 6900 6C00 6C00 6F00 6E00 4200 7900 7400 6500 07",
            [](TQueue& A) { A.PushObject(std::make_shared<TQuillonByte>(std::uint8_t{7})); },
            [](TQueue& A) { return A.PopObject<TQuillonByte>()->FValue == 7; }},
      TCase{"00 00000000", [](TQueue& A) { A.PushObject(nullptr); }, [](TQueue& A) { return !A.PopObject(); }},
      TCase{"01 03000000 61 00 FF",
            [](TQueue& A) { A.PushBinary(std::make_shared<TQuillonMemoryStream>(Hex("61 00 FF"))); },
            [](TQueue& A) { return A.PopBinary()->Content() == Hex("61 00 FF"); }},
      TCase{"01 00000000", [](TQueue& A) { A.PushBinary(nullptr); }, [](TQueue& A) { return !A.PopBinary(); }},
      Case<std::string>("02 02000000 424D", &TQueue::PushBitmap, &TQueue::PopBitmap, "BM"),
      Case<std::string>("03 00000000", &TQueue::PushIcon, &TQueue::PopIcon, ""),
      Case("04 01", &TQueue::PushBoolean, &TQueue::PopBoolean, true),
      Case("05 AC20", &TQueue::PushChar, &TQueue::PopChar, u'€'),
      Case<std::int16_t>("06 FEFF", &TQueue::PushSmallInt, &TQueue::PopSmallInt, -2),
      Case<std::int8_t>("07 80", &TQueue::PushShortInt, &TQueue::PopShortInt, -128),
      Case("08 04030201", &TQueue::PushLongInt, &TQueue::PopLongInt, 0x01020304),
      Case<std::int64_t>("09 FDFFFFFFFFFFFFFF", &TQueue::PushInt64, &TQueue::PopInt64, -3),
      Case<std::uint8_t>("0A FF", &TQueue::PushByte, &TQueue::PopByte, 255),
      Case<std::uint16_t>("0B 01FF", &TQueue::PushWord, &TQueue::PopWord, 0xFF01),
      Case<std::uint32_t>("0C FEFFFFFF", &TQueue::PushLongWord, &TQueue::PopLongWord, 0xFFFFFFFE),
      Case("0D 0000C03F", &TQueue::PushSingle, &TQueue::PopSingle, 1.5F),
      Case("0E 000000000000F83F", &TQueue::PushDouble, &TQueue::PopDouble, 1.5),
      Case("0F 00000000000000C0FF3F", &TQueue::PushExtended, &TQueue::PopExtended, 1.5),
      Case("10 983A000000000000", &TQueue::PushCurrency, &TQueue::PopCurrency, TCurrency::Of(1.5)),
      Case("11 000000000000F83F", &TQueue::PushDateTime, &TQueue::PopDateTime, TQuillonDateTime(1.5)),
      Case<std::string>("12 02000000 E400 AC20", &TQueue::PushString, &TQueue::PopString, "ä€"),
      Case<std::string>("12 00000000", &TQueue::PushString, &TQueue::PopString, ""),
      TCase{"12 08000000 6100 0D000A00 0D000A00 6200 0D000A00", [&](TQueue& A) { A.PushStringList(Lines); },
            [&](TQueue& A) { return A.PopStringList() == Lines; }},
      TCase{"14 33221100 5544 7766 8899AABBCCDDEEFF", [&](TQueue& A) { A.PushGuid(Guid); },
            [&](TQueue& A) { return A.PopGuid() == Guid; }},
  };
  for (const TCase& Each : Cases) {
    SCOPED_TRACE(Each.Digits);
    TQueue Queue;
    Each.Push(Queue);
    std::string Bytes = Hex("01000000") + Hex(Each.Digits);
    EXPECT_EQ(Written(Queue), Bytes);
    EXPECT_EQ(Written(Queue), Hex("00000000"));
    for (std::size_t Size = 0; Size < Bytes.size(); ++Size) {
      EXPECT_THROW(ReadInto(Queue, Bytes.substr(0, Size)), EQuillonReaderError);
    }
    Bytes[4] = static_cast<char>(Bytes[4] | 0x80);
    ReadInto(Queue, Bytes);
    EXPECT_TRUE(Each.Pop(Queue) && Queue.IsEmpty());
  }
}

TEST(WireTest, AQueueGivesWhatCameFirst) {
  const auto Block = std::make_shared<TQuillonMemoryStream>("plan");
  TQueue Queue;
  TQueue Other;
  Queue.PushByte(1);
  Other.PushBinary(Block);
  Other.PushObject(std::make_shared<TQuillonByte>());
  Queue.PushQueue(Other);
  Queue.PushQueue(Queue);
  EXPECT_EQ(Queue.Count(), 3U);
  EXPECT_TRUE(Other.IsEmpty() && Other.PopString().empty() && !Other.PopObject() && Other.PopGuid().IsZero());
  EXPECT_THROW(Queue.PopWord(), EQuillonConvertError);
  EXPECT_EQ(Queue.PopByte(), 1);
  const auto Rest = Queue.PopQueue();
  EXPECT_TRUE(Queue.IsEmpty());
  EXPECT_EQ(Rest->PopBinary(), Block);
  EXPECT_THROW(Rest->PopObject<TQuillonWord>(), EQuillonConvertError);
  EXPECT_NE(Rest->PopObject<TQuillonByte>(), nullptr);
}

TEST(WireTest, AQueueStaysWhereTheStreamFails) {
  std::array<char, 6> Room{};
  TQuillonBufferStream Stream(Room);
  TQueue Queue;
  Queue.PushByte(1);
  Queue.PushByte(2);
  EXPECT_THROW(TQuillonStreamWriter(Stream).WriteObjectProperties(&Queue), EQuillonException);
  for (const std::string_view Digits :
       {"FFFFFFFF", "01000100 0A01", "01000000 13 00000000", "01000000 15 00", "01000000 7F 00", "00000100 0A01",
        "01000000 01 FFFFFF7F 00", "01000000 12 FFFFFFFF", "01000000 12 FFFFFF7F 00"}) {
    EXPECT_THROW(ReadInto(Queue, Hex(Digits)), EQuillonReaderError) << Digits;
  }
  EXPECT_EQ(Written(Queue), Hex("02000000 0A01 0A02"));
}

TEST(WireTest, AResponseHasAMessageOnlyWithAnError) {
  TQuillonRemoteResponse Response;
  Response.FErrorMessage = "x";
  Response.FParamsQueue.PushBoolean(false);
  EXPECT_EQ(Written(Response), Hex("0000 01000000 04 00"));
  const std::string Failure = Hex("0501 01000000 6E00 01000000 0A 09");
  ReadInto(Response, Failure);
  EXPECT_TRUE(Response.HasError() && Response.FErrorCode == 0x0105 && Response.FErrorMessage == "n");
  EXPECT_THROW(ReadInto(Response, Hex("0000 01000000 0A")), EQuillonReaderError);
  EXPECT_EQ(Written(Response), Failure);
  ReadInto(Response, Hex("0000 00000000"));
  EXPECT_TRUE(Response.HasNoError() && Response.FErrorMessage.empty());
}

/// A channel and the server that it is for.
class ChannelTest : public testing::Test {
 protected:
  ChannelTest() {
    FServer.FLocalHost = "127.0.0.1";
    FServer.CreateSocket();
    FServer.Bind();
    FServer.Listen();
    FChannel.SetHost("127.0.0.1");
    FChannel.SetPort(FServer.FLocalPort);
  }
  void Open() {
    FChannel.Open();
    ASSERT_TRUE(FServer.Poll(Long, ssmRead));
    FPeer = FServer.Accept();
  }
  /// All that the client sends until it closes.
  std::string Received() {
    std::string Bytes(1000, '\0');
    Bytes.resize(TQuillonTCPSocketReader(*FPeer).Read(Bytes));
    return Bytes;
  }
  void Send(std::string_view ADigits) { FPeer->Send(Hex(ADigits)); }

  TQuillonTCPSocket FServer;
  TQuillonTCPRemoteChannel FChannel;
  std::unique_ptr<TQuillonTCPSocket> FPeer;
};

TEST_F(ChannelTest, OneConnectionServesAllThatOpenedIt) {
  Open();
  FChannel.Open();
  FChannel.Lock();
  EXPECT_TRUE(FChannel.TryOpen());
  const auto Writer = FChannel.GetWriter();
  const auto Reader = FChannel.GetReader();
  Writer->WriteByte(rcCall);
  Writer->WriteGuid(QuillonGuid::Parse("{00112233-4455-6677-8899-AABBCCDDEEFF}"));
  Writer->FlushBuffer();
  Send("00");
  EXPECT_EQ(Reader->ReadByte(), rsSuccess);
  TQuillonRemoteRequest Request(0x0201);
  Request.FID = 4;
  Request.FParamsQueue.PushString("a");
  Writer->WriteObjectProperties(&Request);
  Writer->FlushBuffer();
  Send("00 0000 01000000 12 01000000 6200");
  EXPECT_EQ(Reader->ReadByte(), rsSuccess);
  TQuillonRemoteResponse Response;
  TQuillonObjectReader ObjectReader(*Reader);
  Response.ReadProperties(ObjectReader);
  EXPECT_EQ(Response.FParamsQueue.PopString(), "b");
  FChannel.Unlock();
  FChannel.Close();
  FChannel.Close();
  EXPECT_TRUE(FChannel.IsOpen());
  Writer->WriteByte(rcPing);
  Writer->FlushBuffer();
  FChannel.Close();
  FChannel.Close();
  EXPECT_FALSE(FChannel.IsOpen());
  EXPECT_EQ(Received(), Hex("03 33221100 5544 7766 8899AABBCCDDEEFF 0102 0400 01000000 12 01000000 6100 05 00"));
  EXPECT_FALSE(FServer.Poll(0, ssmRead));
  Open();
  FChannel.Close();
  EXPECT_EQ(Received(), Hex("00"));
}

TEST_F(ChannelTest, AServerThatSendsTooMuchOrTooSlowlyIsCutOff) {
  Open();
  Send("01000001 6100");
  EXPECT_THROW(FChannel.GetReader()->ReadString(), EQuillonReaderError);
  FChannel.Close();

  Open();
  Send("01000000 6100");
  FChannel.LimitReply(5);
  EXPECT_THROW(FChannel.GetReader()->ReadString(), EQuillonReaderError);
  FChannel.Close();

  FChannel.FBound.FReceiveLimit = 5;
  Open();
  Send("01000000 6100");
  EXPECT_THROW(FChannel.GetReader()->ReadString(), EQuillonReaderError);
  FChannel.FBound.FReceiveLimit = 1'000'000;
  FChannel.Close();

  FChannel.FBound.FAllowance = 100;
  Open();
  std::atomic<bool> IsOver = false;
  const auto Drip = std::async(std::launch::async, [&] {
    for (int I = 0; I < 4'000 && !IsOver; ++I) {
      FPeer->Send("x");
      std::this_thread::sleep_for(5ms);
    }
  });
  EXPECT_THROW(FChannel.GetReader()->ReadBinary(), EQuillonReaderError);
  IsOver = true;
  Drip.wait();
  // No time is left for the end of the connection either.
  EXPECT_THROW(FChannel.Close(), EQuillonWriterError);
  EXPECT_FALSE(FChannel.IsOpen());
}

TEST_F(ChannelTest, AConnectionCanBeCutByAnotherThreadAndMadeAgain) {
  Open();
  const auto Read = std::async(std::launch::async, [&] {
    const auto Reader = FChannel.GetReader();
    EXPECT_THROW(Reader->ReadByte(), EQuillonException);
  });
  std::this_thread::sleep_for(30ms);
  FChannel.Abort();
  EXPECT_EQ(Read.wait_for(20s), std::future_status::ready);
  EXPECT_TRUE(FChannel.IsOpen());
  EXPECT_THROW(FChannel.Close(), EQuillonSocketError);
  EXPECT_FALSE(FChannel.IsOpen());
  Open();
  FChannel.Close();
  FServer.CloseSocket();
  EXPECT_FALSE(FChannel.TryOpen() || FChannel.IsOpen());
}

}  // namespace
