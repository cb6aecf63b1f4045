#include "app/thread.h"

void CMyThread::SetFunc(Function pfnFunction, void* pContext) {
  m_pfnFunction = pfnFunction;
  m_pContext = pContext;
}

void CMyThread::run() {
  int nResult = 0;
  if (m_pfnFunction) m_pfnFunction(m_pContext, nResult);
}
