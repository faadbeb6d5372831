// Tests of the stream that a document is saved to.
#include <gtest/gtest.h>

#include "xml/TextStream.h"

namespace ZOTDam::Test {

TEST(TextStreamTest, WrittenBytesAreKept) {
    CTextStream stream;
    ULONG written = 0;
    EXPECT_EQ(stream.Write("ab", 2, &written), S_OK);
    EXPECT_EQ(written, 2u);
    EXPECT_EQ(stream.Write("c", 1, nullptr), S_OK);
    EXPECT_EQ(stream.Commit(STGC_DEFAULT), S_OK);
    EXPECT_EQ(stream.Text(), "abc");
    EXPECT_TRUE(stream.IsComplete());
}

TEST(TextStreamTest, OnlyStreamInterfacesAreSupported) {
    CTextStream stream;
    void* object = nullptr;
    for (const IID& iid : {IID_IUnknown, IID_ISequentialStream, IID_IStream}) {
        EXPECT_EQ(stream.QueryInterface(iid, &object), S_OK);
        EXPECT_EQ(object, &stream);
    }
    EXPECT_EQ(stream.QueryInterface(IID_IStorage, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
}

TEST(TextStreamTest, ReferenceCountIsConstant) {
    CTextStream stream;
    EXPECT_EQ(stream.AddRef(), 1u);
    EXPECT_EQ(stream.Release(), 1u);
    EXPECT_EQ(stream.Release(), 1u);
}

TEST(TextStreamTest, MethodsUnusedBySaveAreNotImplemented) {
    CTextStream stream;
    EXPECT_EQ(stream.Read(nullptr, 0, nullptr), E_NOTIMPL);
    EXPECT_EQ(stream.Seek({}, STREAM_SEEK_SET, nullptr), E_NOTIMPL);
    EXPECT_EQ(stream.SetSize({}), E_NOTIMPL);
    EXPECT_EQ(stream.CopyTo(nullptr, {}, nullptr, nullptr), E_NOTIMPL);
    EXPECT_EQ(stream.Revert(), E_NOTIMPL);
    EXPECT_EQ(stream.LockRegion({}, {}, LOCK_WRITE), E_NOTIMPL);
    EXPECT_EQ(stream.UnlockRegion({}, {}, LOCK_WRITE), E_NOTIMPL);
    EXPECT_EQ(stream.Stat(nullptr, STATFLAG_NONAME), E_NOTIMPL);
    EXPECT_EQ(stream.Clone(nullptr), E_NOTIMPL);
}

}  // namespace ZOTDam::Test
