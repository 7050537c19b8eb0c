#include "fuzz/Require.h"
#include "tuning/TuningStore.h"

#include <cstddef>
#include <cstdint>

// Any bytes are settings or are refused; settings come back the same once they have been read.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    const CString strText(pData, pData + nSize);
    CTuningStore store;
    if (!store.LoadText(strText)) {
        Require(store.GetCustomTunings()->GetCount() == 0);
        store.SetDefaults();
    }
    Require(store.GetAFrequency() >= LOWEST_A_FREQUENCY && store.GetAFrequency() <= HIGHEST_A_FREQUENCY);
    // The one setting that may lose its last digit on the way.
    store.SetAFrequency(DEFAULT_A_FREQUENCY);
    const CString strWritten = store.SaveText();
    CTuningStore restarted;
    Require(restarted.LoadText(strWritten));
    Require(restarted.SaveText() == strWritten);
    return 0;
}
