#pragma once

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <vector>

class CCaptureThread;

// Keeps the blocks that a capture delivers.
class CBlockStore {
public:
    using Block = std::vector<float>;

    // Makes itself the capture's client, for blocks of that length.
    void Attach(CCaptureThread& capture, int nBlockSamples);
    // What else to do, on the capture thread, at each block; nBlock counts from 0.
    void SetHook(std::function<void(std::size_t nBlock)> hook) { m_hook = std::move(hook); }
    // True once there are that many blocks.
    bool WaitForCount(std::size_t nCount, int nMilliseconds = 10000);
    std::size_t GetCount();
    std::vector<Block> GetBlocks();
    // The first sample of each block.
    std::vector<int> GetFirstSamples();

private:
    static void OnBlock(void* pArg);

    std::vector<float> m_destination;
    std::function<void(std::size_t)> m_hook;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<Block> m_blocks;
};
