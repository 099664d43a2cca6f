#pragma once

/// The data that a draw override passes from preparation to drawing.
class MUserData {
public:
    /// With `deleteAfterUse` false the host keeps the data and passes it to the next preparation.
    MUserData(bool deleteAfterUse);
    virtual ~MUserData();
    MUserData(const MUserData&) = delete;
    MUserData& operator=(const MUserData&) = delete;

    bool deleteAfterUse() const { return deleteAfterUse_; }
    void setDeleteAfterUse(bool deleteAfterUse) { deleteAfterUse_ = deleteAfterUse; }

private:
    bool deleteAfterUse_;
};
