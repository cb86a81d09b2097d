#include "PlanServer.h"

#include <utility>

#include "QuillonRemoteWorkspaces/UserWorkspace.h"
#include "QuillonRemoting/Messages.h"
#include "QuillonSockets/SocketStreams.h"

namespace Bench {

TPlanServer::TPlanServer(std::string APlan, int AConnections) : FPlan(std::move(APlan)) {
  FSocket.FLocalHost = "127.0.0.1";
  FSocket.CreateSocket();
  FSocket.Bind();
  FSocket.Listen();
  FThread = std::thread([this, AConnections] {
    for (int I = 0; I < AConnections; ++I) {
      Serve();
    }
  });
}

void TPlanServer::Serve() {
  constexpr std::size_t BufferSize = 4096;
  const auto Peer = FSocket.Accept();
  TQuillonTCPSocketReader Reader(*Peer, BufferSize);
  TQuillonTCPSocketWriter Writer(*Peer, BufferSize);
  const auto Succeed = [&] { Writer.WriteByte(rsSuccess); };
  for (std::uint8_t Command = Reader.ReadByte(); Command != rcEndOfConnection; Command = Reader.ReadByte()) {
    if (Command == rcLogin) {
      for (int Text = 0; Text < 3; ++Text) {
        Reader.ReadString();
      }
      TQuillonRemoteUserWorkspace Profile;
      Profile.FAdmin = true;
      Succeed();
      Writer.WriteGuid(QuillonGuid::New());
      Writer.WriteBoolean(true);
      Writer.WriteObjectProperties(&Profile);
    } else {
      Reader.ReadGuid();
      Succeed();
    }
    if (Command == rcCall) {
      Writer.FlushBuffer();
      TQuillonRemoteRequest Request;
      TQuillonObjectReader(Reader).ReadObjectProperties({&Request, [](void*) {}}, TQuillonRemoteRequest::Class());
      TQuillonRemoteResponse Response;
      Response.FParamsQueue.PushBinary(std::make_shared<TQuillonMemoryStream>(std::move(FPlan)));
      Succeed();
      Writer.WriteObjectProperties(&Response);
    }
    Writer.FlushBuffer();
  }
}

}  // namespace Bench
