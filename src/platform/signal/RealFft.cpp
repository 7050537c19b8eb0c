#include "platform/signal/RealFft.h"

#include "platform/signal/AlignedArray.h"

#include <fftw3.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <mutex>
#include <type_traits>

namespace {

using Plan = std::remove_pointer_t<fftwf_plan>;

// The plans of one order. One for buffers aligned as the vector units want them, one for any other.
struct OrderPlans {
    std::atomic<Plan*> pAligned{nullptr};
    std::atomic<Plan*> pAny{nullptr};
};

class CPlanTable {
public:
    bool Prepare(int nOrder);
    // Null unless prepared.
    Plan* Find(int nOrder, const float* pfBuffer) const;
    void Free();
    void ForgetPlanner();

private:
    // The library's planner is not safe to enter twice; its transforms are.
    std::mutex m_plannerLock;
    std::array<OrderPlans, MAX_FFT_ORDER + 1> m_orders;
};

Plan* MakePlan(float* pfBuffer, int nOrder, unsigned nFlags) {
    // A plan that is measured may differ from run to run, and with it the last bits of a spectrum.
    return fftwf_plan_dft_r2c_1d(1 << nOrder, pfBuffer, reinterpret_cast<fftwf_complex*>(pfBuffer),
                                 FFTW_ESTIMATE | nFlags);
}

bool CPlanTable::Prepare(int nOrder) {
    if (nOrder < 0 || nOrder > MAX_FFT_ORDER) {
        return false;
    }
    OrderPlans& plans = m_orders[static_cast<std::size_t>(nOrder)];
    if (plans.pAligned.load(std::memory_order_acquire) != nullptr) {
        return true;
    }
    const std::scoped_lock lock(m_plannerLock);
    if (plans.pAligned.load(std::memory_order_relaxed) != nullptr) {
        return true;
    }
    CAlignedArray<float> buffer;
    if (!buffer.Allocate((1 << nOrder) + 2)) {
        return false;
    }
    Plan* pAny = MakePlan(buffer.Data(), nOrder, FFTW_UNALIGNED);
    Plan* pAligned = MakePlan(buffer.Data(), nOrder, 0);
    if (pAny == nullptr || pAligned == nullptr) {
        fftwf_destroy_plan(pAny);
        fftwf_destroy_plan(pAligned);
        return false;
    }
    // Released in this order: who sees the aligned plan sees both, and all that the planner wrote for them.
    plans.pAny.store(pAny, std::memory_order_release);
    plans.pAligned.store(pAligned, std::memory_order_release);
    return true;
}

Plan* CPlanTable::Find(int nOrder, const float* pfBuffer) const {
    if (nOrder < 0 || nOrder > MAX_FFT_ORDER) {
        return nullptr;
    }
    const OrderPlans& plans = m_orders[static_cast<std::size_t>(nOrder)];
    // The library asks for a float* that it does not write through.
    const bool bAligned = fftwf_alignment_of(const_cast<float*>(pfBuffer)) == 0;
    return (bAligned ? plans.pAligned : plans.pAny).load(std::memory_order_acquire);
}

void CPlanTable::Free() {
    const std::scoped_lock lock(m_plannerLock);
    for (OrderPlans& plans : m_orders) {
        fftwf_destroy_plan(plans.pAligned.exchange(nullptr));
        fftwf_destroy_plan(plans.pAny.exchange(nullptr));
    }
}

void CPlanTable::ForgetPlanner() {
    const std::scoped_lock lock(m_plannerLock);
    fftwf_forget_wisdom();
}

CPlanTable g_plans;

}  // namespace

bool nspsPrepareRealFft(int nOrder) {
    return g_plans.Prepare(nOrder);
}

void nspsRealFft(float* pfBuffer, int nOrder, int nFlags) {
    if (nFlags != NSP_FORWARD) {
        return;
    }
    Plan* pPlan = g_plans.Find(nOrder, pfBuffer);
    if (pPlan == nullptr && g_plans.Prepare(nOrder)) {
        pPlan = g_plans.Find(nOrder, pfBuffer);
    }
    if (pPlan != nullptr) {
        fftwf_execute_dft_r2c(pPlan, pfBuffer, reinterpret_cast<fftwf_complex*>(pfBuffer));
    }
}

void nspFreeBitRevTbls() {
    g_plans.Free();
}

void nspcFreeTwdTbls() {
    g_plans.ForgetPlanner();
}
