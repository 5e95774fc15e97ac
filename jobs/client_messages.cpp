// The messages to the host's client. None is sent without an adapter.
#include "entry/record/geno_job_settings.h"
#include "host/language.h"
#include "host/message_bus.h"
#include "jobs/geno_stat_algo_manager.h"

void GenoStatAlgoManager::sendStartGenomicsJobMessage(const GenoJobSettings& job, bool started) {
  ZORV_Adapter* adapter = GetAdapter();
  if (adapter == nullptr) return;
  const ZorvwMsgStartGenomicProcessing message(job.jobName(), started);
  adapter->postClientMessage(ZorvwMsgStartGenomicProcessing::kMessageId, &message);
}

void GenoStatAlgoManager::sendEndGenomicsJobMessage(const GenoJobSettings& job, const std::string& message) {
  ZORV_Adapter* adapter = GetAdapter();
  if (adapter == nullptr) return;
  const ZorvwMsgEndGenomicProcessing end(job.jobName(), message, job.csvFilePath(), job.workbookId(),
                                         job.paragraphId());
  adapter->postClientMessage(ZorvwMsgEndGenomicProcessing::kMessageId, &end);
}
