#include "commissioning/Reconfiguration.h"

Reconfiguration::Result Reconfiguration::run(qint16 satId, qint16 newSatId,
                                             std::optional<qint16> interfaceCode,
                                             std::optional<qint32> enabled) {
    Result result;
    const auto failed = [&](Outcome outcome) {
        result.outcome = session_.linkFailure() ? Outcome::LinkFailed : outcome;
        result.error = session_.lastError();
        return result;
    };
    const auto current = probe_.readConfig(satId);
    if (!current)
        return failed(Outcome::NoAnswer);
    // Two satellites under one Sat ID could no longer be told apart.
    if (newSatId != satId && probe_.detect(newSatId))
        return failed(Outcome::NewIdTaken);
    if (session_.linkFailure())
        return failed(Outcome::LinkFailed);
    result.sent = *current;
    result.sent.interfaceCode = interfaceCode.value_or(current->interfaceCode);
    result.sent.enabled = enabled.value_or(current->enabled != 0 ? 1 : 0);
    probe_.configure(satId, newSatId, result.sent);

    const auto after = probe_.readConfig(newSatId);
    if (!after)
        return failed(Outcome::Silent);
    result.readBack = *after;
    // By meaning: any interface code but 1 is RS-485, any enabled flag but 0 is on.
    const bool same =
        interfaceName(after->interfaceCode) == interfaceName(result.sent.interfaceCode) &&
        (after->enabled != 0) == (result.sent.enabled != 0);
    result.outcome = same ? Outcome::Confirmed : Outcome::Differs;
    return result;
}
