#include "capture/BlockStore.h"

#include "capture/CaptureThread.h"

#include <chrono>

void CBlockStore::Attach(CCaptureThread& capture, int nBlockSamples) {
    m_destination.assign(static_cast<std::size_t>(nBlockSamples), 0.5F);
    capture.SetBlockSamples(nBlockSamples);
    capture.SetDestination(m_destination.data());
    capture.SetBlockCallback(&CBlockStore::OnBlock, this);
}

void CBlockStore::OnBlock(void* pArg) {
    auto& store = *static_cast<CBlockStore*>(pArg);
    std::size_t nBlock = 0;
    {
        const std::lock_guard lock(store.m_mutex);
        nBlock = store.m_blocks.size();
        store.m_blocks.push_back(store.m_destination);
        store.m_changed.notify_all();
    }
    // What a block leaves behind must not be seen in the next one.
    std::fill(store.m_destination.begin(), store.m_destination.end(), 0.5F);
    if (store.m_hook) {
        store.m_hook(nBlock);
    }
}

bool CBlockStore::WaitForCount(std::size_t nCount, int nMilliseconds) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, std::chrono::milliseconds(nMilliseconds),
                              [&] { return m_blocks.size() >= nCount; });
}

std::size_t CBlockStore::GetCount() {
    const std::lock_guard lock(m_mutex);
    return m_blocks.size();
}

std::vector<CBlockStore::Block> CBlockStore::GetBlocks() {
    const std::lock_guard lock(m_mutex);
    return m_blocks;
}

std::vector<int> CBlockStore::GetFirstSamples() {
    std::vector<int> first;
    for (const Block& block : GetBlocks()) {
        first.push_back(static_cast<int>(block.front()));
    }
    return first;
}
