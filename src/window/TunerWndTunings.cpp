#include "dialogs/TuningNameDialog.h"
#include "platform/base/String.h"
#include "tuning/PresetFile.h"
#include "window/TunerWnd.h"

#include <mutex>

// The rows of the list: the presets, then the custom tunings, then at most one temporary row for notes that
// were set by hand and stand in neither list.

namespace {

constexpr const char* TEMPORARY_ROW = "User Defined Tuning";

}  // namespace

bool CTunerWnd::LoadPresets(const CString& strPath) {
    int nDropped = 0;
    const bool bLoaded = LoadPresetFile(strPath, m_presets, nDropped);
    if (nDropped > 0) {
        m_errorLog.Log(FormatText("Left out %d unusable tuning(s) of %s", nDropped, strPath.c_str()));
    }
    return bLoaded;
}

void CTunerWnd::FillList() {
    if (!LoadPresets("preset.txt")) {
        m_presets.AddTail(Tuning::StandardE());
        m_errorLog.Log("Cannot find preset.txt, using only standard E tuning");
    }
    m_nPresetCount = 0;
    Tuning tuning;
    for (bool bFound = m_presets.GetAt(tuning, 0); bFound; bFound = m_presets.GetNext(tuning)) {
        ++m_nPresetCount;
        m_lbTunings.AddString(tuning.m_strName);
    }
    CTuningList& custom = *m_store.GetCustomTunings();
    for (bool bFound = custom.GetAt(tuning, 0); bFound; bFound = custom.GetNext(tuning)) {
        m_lbTunings.AddString(tuning.m_strName);
    }
}

void CTunerWnd::OnSelChange() {
    int nSelected = m_lbTunings.GetCurSel();
    const int nTemporary = m_lbTunings.FindString(0, TEMPORARY_ROW);
    if (nTemporary == nSelected) {
        return;
    }
    if (nTemporary >= 0) {
        m_lbTunings.DeleteString(nTemporary);
        if (nTemporary < nSelected) {
            --nSelected;
        }
    }
    Tuning tuning;
    if (nSelected < m_nPresetCount) {
        if (!m_presets.GetAt(tuning, nSelected)) {
            return;
        }
        m_btnDel.EnableWindow(false);
        m_lbTunings.SetFocus();
    } else {
        if (!m_store.GetCustomTunings()->GetAt(tuning, nSelected - m_nPresetCount)) {
            return;
        }
        m_btnDel.EnableWindow(true);
    }
    *m_store.GetCurrentTuning() = tuning;
    ShowTuning();
}

void CTunerWnd::OnAddTuning() {
    CTuningNameDialog dialog(this);
    if (dialog.DoModal() != IDOK || dialog.m_strName.empty() || m_bClosing) {
        return;
    }
    Tuning& current = *m_store.GetCurrentTuning();
    current.m_strName = dialog.m_strName;
    m_store.GetCustomTunings()->AddTail(current);
    m_lbTunings.AddString(current.m_strName);
    m_lbTunings.SetCurSel(m_lbTunings.GetCount() - 1);
    OnSelChange();
    m_lbTunings.SetFocus();
}

void CTunerWnd::OnDeleteTuning() {
    const int nSelected = m_lbTunings.GetCurSel();
    if (nSelected < m_nPresetCount) {
        return;  // nothing selected, or a preset
    }
    if (nSelected == m_lbTunings.GetCount() - 1) {
        m_lbTunings.SetCurSel(nSelected - 1);
        m_lbTunings.DeleteString(nSelected);
    } else {
        m_lbTunings.DeleteString(nSelected);
        m_lbTunings.SetCurSel(nSelected);
    }
    // The temporary row has no tuning in the list: then there is nothing to remove.
    m_store.GetCustomTunings()->RemoveAt(nSelected - m_nPresetCount);
    OnSelChange();
}

void CTunerWnd::SyncListToCurrent() {
    Tuning& current = *m_store.GetCurrentTuning();
    if (const int nPreset = m_presets.Find(current); nPreset >= 0) {
        m_lbTunings.SetCurSel(nPreset);
        OnSelChange();
        return;
    }
    if (const int nCustom = m_store.GetCustomTunings()->Find(current); nCustom >= 0) {
        m_lbTunings.SetCurSel(m_nPresetCount + nCustom);
        OnSelChange();
        return;
    }
    int nTemporary = m_lbTunings.FindString(0, TEMPORARY_ROW);
    if (nTemporary < 0) {
        current.m_strName = TEMPORARY_ROW;
        nTemporary = m_lbTunings.AddString(TEMPORARY_ROW);
    }
    m_lbTunings.SetCurSel(nTemporary);
    ShowTuning();
}

void CTunerWnd::ShowTuning() {
    const Tuning& current = *m_store.GetCurrentTuning();
    m_stringDiagram.SetTuning(current);
    {
        const std::scoped_lock lock(GetPictureLock());
        m_coarse.SetTuning(current);
    }
    DrawTuning();
}
