#include <gtest/gtest.h>

#include <deque>
#include <functional>

#include "tests/automation/component.hpp"
#include "tests/automation/host_object.hpp"
#include "tests/support/temporary_folder.hpp"

namespace vorquill21::test {
namespace {

/// A sink of the host for the events of a log.
class Sink final : public HostObject<> {
 public:
  using Handler = std::function<HRESULT(const std::wstring& message, LONG action)>;

  explicit Sink(Handler handler = {}) : HostObject(DIID___CLog), handler_(std::move(handler)) {}

  STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                      UINT*) override {
    EXPECT_EQ(1, member);
    EXPECT_EQ(2u, arguments->cArgs);
    EXPECT_EQ(VT_BSTR, arguments->rgvarg[1].vt);
    EXPECT_EQ(VT_I4, arguments->rgvarg[0].vt);
    messages_.emplace_back(arguments->rgvarg[1].bstrVal);
    return handler_ ? handler_(messages_.back(), arguments->rgvarg[0].lVal) : S_OK;
  }

  std::vector<std::wstring> messages_;

 private:
  Handler handler_;
};

class EventsTest : public testing::Test {
 protected:
  void SetUp() override {
    log_ = VORQUILL21_MAKE(CLog);
    const std::wstring path = (folder_.Path() / "events.log").wstring();
    ASSERT_EQ(S_OK,
              log_->Initialise(TextArgument(path.c_str()), 1000, VARIANT_TRUE, VARIANT_TRUE, Value(L"")));
    Reference<IConnectionPointContainer> container;
    ASSERT_EQ(S_OK, log_->QueryInterface(IID_IConnectionPointContainer,
                                         reinterpret_cast<void**>(container.Receive())));
    ASSERT_EQ(S_OK, container->FindConnectionPoint(DIID___CLog, point_.Receive()));
  }

  DWORD Connect(Sink& sink) {
    DWORD cookie = 0;
    EXPECT_EQ(S_OK, point_->Advise(&sink, &cookie));
    return cookie;
  }

  /// A sink that outlives the log.
  Sink& NewSink(Sink::Handler handler = {}) { return sinks_.emplace_back(std::move(handler)); }

  HRESULT Add(const wchar_t* entry) { return log_->AddEntry(TextArgument(entry), logNormal); }

  TemporaryFolder folder_;
  std::deque<Sink> sinks_;
  Reference<_CLog> log_;
  Reference<IConnectionPoint> point_;
};

TEST_F(EventsTest, EveryConnectedSinkHearsOfAnEntry) {
  Sink& first = NewSink();
  Sink& second = NewSink();
  const DWORD connection = Connect(first);
  Connect(second);
  EXPECT_EQ(S_OK, Add(L"one"));
  EXPECT_EQ(S_OK, point_->Unadvise(connection));
  EXPECT_EQ(0u, first.References());
  EXPECT_EQ(S_OK, Add(L"two"));
  EXPECT_EQ((std::vector<std::wstring>{L"one"}), first.messages_);
  EXPECT_EQ((std::vector<std::wstring>{L"one", L"two"}), second.messages_);
  EXPECT_EQ(CONNECT_E_NOCONNECTION, point_->Unadvise(connection));
  point_ = nullptr;
  log_ = nullptr;
  EXPECT_EQ(0u, second.References());
}

TEST_F(EventsTest, AHandlerMayFail) {
  for (const HRESULT failure : {E_FAIL, DISP_E_EXCEPTION, DISP_E_MEMBERNOTFOUND}) {
    Connect(NewSink([failure](const std::wstring&, LONG) { return failure; }));
  }
  Sink& other = NewSink();
  Connect(other);
  EXPECT_EQ(S_OK, Add(L"one"));
  EXPECT_EQ(S_OK, Add(L"two"));
  for (const Sink& sink : sinks_) EXPECT_EQ((std::vector<std::wstring>{L"one", L"two"}), sink.messages_);
}

TEST_F(EventsTest, AHandlerMayDisconnectItself) {
  DWORD connection = 0;
  Sink& once = NewSink([&](const std::wstring&, LONG) { return point_->Unadvise(connection); });
  connection = Connect(once);
  EXPECT_EQ(S_OK, Add(L"one"));
  EXPECT_EQ(S_OK, Add(L"two"));
  EXPECT_EQ(1u, once.messages_.size());
  EXPECT_EQ(0u, once.References());
}

TEST_F(EventsTest, AHandlerMayDisconnectTheOneAfterIt) {
  DWORD connection = 0;
  Sink& first = NewSink([&](const std::wstring&, LONG) { return point_->Unadvise(connection); });
  Sink& second = NewSink();
  Connect(first);
  connection = Connect(second);
  EXPECT_EQ(S_OK, Add(L"one"));
  EXPECT_EQ(1u, first.messages_.size());
  EXPECT_EQ(0u, second.messages_.size());
  EXPECT_EQ(0u, second.References());
}

TEST_F(EventsTest, AHandlerMayAddEntries) {
  Sink& echoing = NewSink([&](const std::wstring& message, LONG) {
    return message.size() < 5 ? Add((message + L"!").c_str()) : S_OK;
  });
  Connect(echoing);
  EXPECT_EQ(S_OK, Add(L"one"));
  EXPECT_EQ((std::vector<std::wstring>{L"one", L"one!", L"one!!"}), echoing.messages_);
}

TEST_F(EventsTest, AHandlerMayAddEntriesForEver) {
  Sink& endless = NewSink([&](const std::wstring&, LONG) { return Add(L"again"); });
  Connect(endless);
  EXPECT_EQ(S_OK, Add(L"one"));
  EXPECT_EQ(100u, endless.messages_.size());
}

TEST_F(EventsTest, AHandlerMayReleaseTheLog) {
  point_ = nullptr;
  Sink& releasing = NewSink([&](const std::wstring&, LONG) {
    log_ = nullptr;
    return S_OK;
  });
  Sink& other = NewSink();
  {
    Reference<IConnectionPointContainer> container;
    log_->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(container.Receive()));
    container->FindConnectionPoint(DIID___CLog, point_.Receive());
    Connect(releasing);
    Connect(other);
    point_ = nullptr;
  }
  _CLog* const log = log_.Get();
  EXPECT_EQ(S_OK, log->AddEntry(TextArgument(L"last"), logNormal));
  EXPECT_EQ(1u, other.messages_.size());  // the call itself keeps the log
  EXPECT_EQ(0u, releasing.References());
  EXPECT_EQ(0u, other.References());
}

TEST_F(EventsTest, ListsItsConnections) {
  Sink& sink = NewSink();
  const DWORD connection = Connect(sink);
  const ULONG references = sink.References();
  Reference<IEnumConnections> connections;
  ASSERT_EQ(S_OK, point_->EnumConnections(connections.Receive()));
  CONNECTDATA data{};
  EXPECT_EQ(S_OK, connections->Next(1, &data, nullptr));
  EXPECT_EQ(connection, data.dwCookie);
  data.pUnk->Release();
  EXPECT_EQ(S_FALSE, connections->Next(1, &data, nullptr));
  EXPECT_EQ(S_OK, connections->Reset());
  Reference<IEnumConnections> copy;
  EXPECT_EQ(S_OK, connections->Clone(copy.Receive()));
  EXPECT_EQ(S_OK, copy->Skip(1));
  EXPECT_EQ(S_FALSE, copy->Skip(1));
  copy = nullptr;
  connections = nullptr;
  EXPECT_EQ(references, sink.References());
  EXPECT_EQ(S_OK, point_->Unadvise(connection));
}

TEST_F(EventsTest, HasOneConnectionPoint) {
  Reference<IConnectionPointContainer> container;
  ASSERT_EQ(S_OK, point_->GetConnectionPointContainer(container.Receive()));
  Reference<IEnumConnectionPoints> points;
  ASSERT_EQ(S_OK, container->EnumConnectionPoints(points.Receive()));
  IConnectionPoint* found[2]{};
  ULONG count = 0;
  EXPECT_EQ(S_FALSE, points->Next(2, found, &count));
  ASSERT_EQ(1u, count);
  IID id;
  EXPECT_EQ(S_OK, found[0]->GetConnectionInterface(&id));
  EXPECT_EQ(DIID___CLog, id);
  found[0]->Release();
  Reference<IConnectionPoint> other;
  EXPECT_EQ(CONNECT_E_NOCONNECTION, container->FindConnectionPoint(IID_IDispatch, other.Receive()));
  DWORD cookie = 0;
  EXPECT_EQ(E_POINTER, point_->Advise(nullptr, &cookie));
  Sink& sink = NewSink();
  EXPECT_EQ(E_POINTER, point_->Advise(&sink, nullptr));
  EXPECT_EQ(0u, sink.References());
}

}  // namespace
}  // namespace vorquill21::test
